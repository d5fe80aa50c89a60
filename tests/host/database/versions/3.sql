BEGIN TRANSACTION;
CREATE TABLE approximate_end (
    line   TEXT NOT NULL,
    number TEXT NOT NULL,
    time   TEXT NOT NULL,
    PRIMARY KEY (line, number, time)
) STRICT, WITHOUT ROWID;
INSERT INTO "approximate_end" VALUES('2001','4712','2026-11-20T10:00:00Z');
CREATE TABLE call_item (
    id           INTEGER PRIMARY KEY AUTOINCREMENT,
    line         TEXT NOT NULL,
    list         INTEGER NOT NULL,
    sort_key     TEXT NOT NULL,
    entry_id     TEXT NOT NULL,
    first_name   TEXT NOT NULL,
    surname      TEXT NOT NULL,
    picture_clip TEXT NOT NULL,
    viewed       INTEGER NOT NULL,
    group_by     TEXT NOT NULL
) STRICT;
INSERT INTO "call_item" VALUES(7,'2001',0,'2026-11-21T05:22:05Z','2026-11-21T05:22:05Z0000002A','Ann','Müller','',0,'');
INSERT INTO "call_item" VALUES(8,'2001',2,'2026-11-20T10:00:00Z','2026-11-20T10:00:00Z0000002B','','Bob','',1,'');
CREATE TABLE callback (
    line        TEXT NOT NULL,
    entry_id    TEXT NOT NULL,
    first_name  TEXT NOT NULL,
    surname     TEXT NOT NULL,
    number      TEXT NOT NULL,
    number_type INTEGER NOT NULL,
    time_date   TEXT NOT NULL,
    type        INTEGER NOT NULL,
    state       INTEGER NOT NULL,
    device_id   TEXT NOT NULL,
    PRIMARY KEY (line, entry_id)
) STRICT, WITHOUT ROWID;
CREATE TABLE contact (
    id             INTEGER PRIMARY KEY AUTOINCREMENT,
    line           TEXT NOT NULL,
    surname        TEXT NOT NULL,
    first_name     TEXT NOT NULL,
    office         TEXT NOT NULL,
    mobile         TEXT NOT NULL,
    private        TEXT NOT NULL,
    office2        TEXT NOT NULL,
    default_number INTEGER NOT NULL,
    email          TEXT NOT NULL,
    group_name     TEXT NOT NULL,
    company        TEXT NOT NULL,
    address        TEXT NOT NULL,
    address2       TEXT NOT NULL,
    job_function   TEXT NOT NULL,
    picture        TEXT NOT NULL,
    voice_dial     TEXT NOT NULL,
    external_id    TEXT NOT NULL,
    source         INTEGER NOT NULL
) STRICT;
INSERT INTO "contact" VALUES(1,'2001','Økland','Zoë','4713','','','',1,'','','','','','','','','',1);
CREATE TABLE contact_number (
    line     TEXT NOT NULL,
    number   TEXT NOT NULL,
    contact  INTEGER NOT NULL REFERENCES contact (id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    PRIMARY KEY (line, number, contact, position)
) STRICT, WITHOUT ROWID;
CREATE TABLE contact_number_rules (
    line  TEXT NOT NULL PRIMARY KEY,
    rules TEXT NOT NULL
) STRICT, WITHOUT ROWID;
CREATE TABLE live_call (
    line               TEXT NOT NULL,
    device             TEXT NOT NULL,
    call_id            TEXT NOT NULL,
    first_event        INTEGER NOT NULL,
    role               INTEGER NOT NULL,
    outgoing           INTEGER NOT NULL,
    conference         INTEGER NOT NULL,
    conference_id      TEXT NOT NULL,
    marked_missed      INTEGER NOT NULL,
    pick_up            INTEGER NOT NULL,
    transferred        INTEGER NOT NULL,
    elsewhere          INTEGER NOT NULL,
    calling_number     TEXT NOT NULL,
    calling_name       TEXT NOT NULL,
    called_number      TEXT NOT NULL,
    called_name        TEXT NOT NULL,
    redirecting_number TEXT NOT NULL,
    redirecting_name   TEXT NOT NULL,
    partner_number     TEXT NOT NULL,
    partner_name       TEXT NOT NULL,
    others             TEXT NOT NULL,
    established        INTEGER,
    last_event         INTEGER NOT NULL,
    seen               INTEGER NOT NULL,
    ended              INTEGER,
    end_approximate    INTEGER NOT NULL,
    PRIMARY KEY (line, device, call_id, first_event)
) STRICT, WITHOUT ROWID;
CREATE TABLE management_value (
    line  TEXT NOT NULL,
    key   TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (line, key)
) STRICT, WITHOUT ROWID;
INSERT INTO "management_value" VALUES('2001','sntp-tz-offset','60');
CREATE TABLE occurrence (
    item                          INTEGER NOT NULL REFERENCES call_item (id) ON DELETE CASCADE,
    position                      INTEGER NOT NULL,
    line                          TEXT NOT NULL,
    call_id                       TEXT NOT NULL,
    number                        TEXT NOT NULL,
    connected_number              TEXT NOT NULL,
    text_c                        TEXT NOT NULL,
    text_d                        TEXT NOT NULL,
    time_and_date                 TEXT NOT NULL,
    log_target                    INTEGER NOT NULL,
    presentation_a                INTEGER NOT NULL,
    presentation_b                INTEGER NOT NULL,
    presentation_c                INTEGER NOT NULL,
    presentation_d                INTEGER NOT NULL,
    duration                      TEXT NOT NULL,
    time_format                   INTEGER NOT NULL,
    redirecting_number            TEXT NOT NULL,
    redirecting_name              TEXT NOT NULL,
    redirecting_number_presentation INTEGER NOT NULL,
    redirecting_name_presentation INTEGER NOT NULL,
    transfer_number_type          INTEGER NOT NULL,
    redirecting_reason            INTEGER NOT NULL,
    completed_elsewhere           INTEGER NOT NULL,
    group_text                    TEXT NOT NULL,
    line_key                      TEXT NOT NULL,
    substitute_number             TEXT NOT NULL,
    feature_access_code           INTEGER NOT NULL,
    forwarded_to_number           TEXT NOT NULL,
    forwarding_target             INTEGER NOT NULL,
    forwarding_reason             INTEGER NOT NULL,
    PRIMARY KEY (item, position)
) STRICT, WITHOUT ROWID;
INSERT INTO "occurrence" VALUES(7,0,'2001','42','+49 30 4711','','','','2026-11-21T05:22:05Z',0,0,0,0,0,'',0,'4700','Désk',0,0,0,0,0,'','','',0,'',0,0);
INSERT INTO "occurrence" VALUES(7,1,'2001','41','+49 30 4711','','','','2026-11-20T12:00:00',0,0,0,0,0,'',1,'','',0,0,0,0,1,'','','',0,'',0,0);
INSERT INTO "occurrence" VALUES(8,0,'2001','43','4712','','','','2026-11-20T10:00:00Z',0,0,0,0,0,'75:11',0,'','',0,0,0,0,0,'','','',0,'',0,0);
INSERT INTO "occurrence" VALUES(8,1,'2001','43','4712','','','','2026-11-20T10:00:00Z',0,0,0,0,0,'00:05',0,'','',0,0,0,0,0,'','','',0,'',0,0);
INSERT INTO "occurrence" VALUES(8,2,'2001','','4712','','','','unknown',0,0,0,0,0,'00:00',0,'','',0,0,0,0,0,'','','',0,'',0,0);
CREATE TABLE setting (
    line  TEXT NOT NULL,
    key   TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (line, key)
) STRICT, WITHOUT ROWID;
CREATE INDEX call_item_newest ON call_item (line, list, sort_key DESC, entry_id DESC, id DESC);
CREATE INDEX call_item_entry ON call_item (line, list, entry_id);
CREATE INDEX contact_name ON contact (line, surname COLLATE NOCASE, first_name COLLATE NOCASE, id);
CREATE INDEX contact_number_contact ON contact_number (contact);
CREATE INDEX contact_external ON contact (line, external_id) WHERE external_id <> '';
DELETE FROM "sqlite_sequence";
INSERT INTO "sqlite_sequence" VALUES('call_item',8);
INSERT INTO "sqlite_sequence" VALUES('contact',1);
COMMIT;
PRAGMA application_id = 1128952430;
PRAGMA user_version = 3;
