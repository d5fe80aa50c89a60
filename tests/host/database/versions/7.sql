BEGIN TRANSACTION;
CREATE TABLE access_token (
    id      INTEGER PRIMARY KEY AUTOINCREMENT,
    hash    TEXT NOT NULL UNIQUE,
    name    TEXT NOT NULL UNIQUE,
    scope   TEXT NOT NULL,
    line    TEXT NOT NULL,
    created INTEGER NOT NULL,
    expires INTEGER
) STRICT;
INSERT INTO "access_token" VALUES(1,'9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08','wallboard','read','',1763702525,NULL);
CREATE TABLE call (
    id                  INTEGER PRIMARY KEY AUTOINCREMENT,
    line                TEXT NOT NULL,
    list                INTEGER NOT NULL,
    item                INTEGER REFERENCES call_item (id) ON DELETE SET NULL,
    item_order          INTEGER NOT NULL,
    listed              INTEGER NOT NULL,
    call_id             TEXT NOT NULL,
    part                INTEGER NOT NULL,
    start               INTEGER NOT NULL,
    established         INTEGER,
    ended               INTEGER,
    duration            INTEGER NOT NULL,
    end_approximate     INTEGER NOT NULL,
    called_back_at      INTEGER,
    reason              INTEGER NOT NULL,
    party               INTEGER NOT NULL REFERENCES party (id),
    connected           INTEGER REFERENCES party (id),
    redirecting         INTEGER REFERENCES party (id),
    connected_number    TEXT NOT NULL,
    text_c              TEXT NOT NULL,
    text_d              TEXT NOT NULL,
    time_and_date       TEXT NOT NULL,
    log_target          INTEGER NOT NULL,
    presentation_a      INTEGER NOT NULL,
    presentation_b      INTEGER NOT NULL,
    presentation_c      INTEGER NOT NULL,
    presentation_d      INTEGER NOT NULL,
    duration_text       TEXT NOT NULL,
    time_format         INTEGER NOT NULL,
    redirecting_number_presentation INTEGER NOT NULL,
    redirecting_name_presentation   INTEGER NOT NULL,
    transfer_number_type INTEGER NOT NULL,
    redirecting_reason  INTEGER NOT NULL,
    completed_elsewhere INTEGER NOT NULL,
    group_text          TEXT NOT NULL,
    line_key            TEXT NOT NULL,
    substitute_number   TEXT NOT NULL,
    feature_access_code INTEGER NOT NULL,
    forwarded_to_number TEXT NOT NULL,
    forwarding_target   INTEGER NOT NULL,
    forwarding_reason   INTEGER NOT NULL
) STRICT;
INSERT INTO "call" VALUES(1,'2001',2,8,-2,1,'',0,0,NULL,NULL,0,0,NULL,0,2,NULL,NULL,'','','','unknown',0,0,0,0,0,'00:00',0,0,0,0,0,0,'','','',0,'',0,0);
INSERT INTO "call" VALUES(2,'2001',2,8,-1,1,'43',1,1795168800,NULL,NULL,5,1,NULL,0,2,NULL,NULL,'','','','2026-11-20T10:00:00Z',0,0,0,0,0,'00:05',0,0,0,0,0,0,'','','',0,'',0,0);
INSERT INTO "call" VALUES(3,'2001',2,8,0,1,'43',0,1795168800,NULL,NULL,4511,1,NULL,0,2,NULL,NULL,'','','','2026-11-20T10:00:00Z',0,0,0,0,0,'75:11',0,0,0,0,0,0,'','','',0,'',0,0);
INSERT INTO "call" VALUES(4,'2001',0,7,-1,1,'41',0,1795172400,NULL,NULL,0,0,NULL,6,1,NULL,NULL,'','','','2026-11-20T12:00:00',0,0,0,0,0,'',1,0,0,0,0,1,'','','',0,'',0,0);
INSERT INTO "call" VALUES(5,'2001',0,7,0,1,'42',0,1795238525,NULL,NULL,0,0,NULL,0,1,NULL,3,'','','','2026-11-21T05:22:05Z',0,0,0,0,0,'',0,0,0,0,0,0,'','','',0,'',0,0);
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
, calls INTEGER NOT NULL DEFAULT 0) STRICT;
INSERT INTO "call_item" VALUES(7,'2001',0,'2026-11-21T05:22:05Z','2026-11-21T05:22:05Z0000002A','Ann','Müller','',0,'',2);
INSERT INTO "call_item" VALUES(8,'2001',2,'2026-11-20T10:00:00Z','2026-11-20T10:00:00Z0000002B','','Bob','',1,'',3);
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
, search TEXT NOT NULL DEFAULT '') STRICT;
INSERT INTO "contact" VALUES(1,'2001','Økland','Zoë','4713','','','',1,'','','','','','','','','',1,'zoe økland');
CREATE TABLE contact_number (
    line     TEXT NOT NULL,
    number   TEXT NOT NULL,
    contact  INTEGER NOT NULL REFERENCES contact (id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    PRIMARY KEY (line, number, contact, position)
) STRICT, WITHOUT ROWID;
INSERT INTO "contact_number" VALUES('2001','4713',1,1);
CREATE TABLE contact_number_rules (
    line  TEXT NOT NULL PRIMARY KEY,
    rules TEXT NOT NULL
) STRICT, WITHOUT ROWID;
INSERT INTO "contact_number_rules" VALUES('2001','2 DE *61');
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
    end_approximate    INTEGER NOT NULL, reason INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY (line, device, call_id, first_event)
) STRICT, WITHOUT ROWID;
CREATE TABLE management_value (
    line  TEXT NOT NULL,
    key   TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (line, key)
) STRICT, WITHOUT ROWID;
INSERT INTO "management_value" VALUES('2001','sntp-tz-offset','60');
CREATE TABLE party (
    id     INTEGER PRIMARY KEY,
    line   TEXT NOT NULL,
    number TEXT NOT NULL,
    name   TEXT NOT NULL,
    lookup TEXT NOT NULL,
    search TEXT NOT NULL,
    UNIQUE (line, number, name)
) STRICT;
INSERT INTO "party" VALUES(1,'2001','+49 30 4711','Ann Müller','+49304711','ann muller+49304711');
INSERT INTO "party" VALUES(2,'2001','4712','Bob','4712','bob4712');
INSERT INTO "party" VALUES(3,'2001','4700','Désk','4700','desk4700');
CREATE TABLE party_note (
    line   TEXT NOT NULL,
    number TEXT NOT NULL,
    note   TEXT NOT NULL,
    PRIMARY KEY (line, number)
) STRICT, WITHOUT ROWID;
CREATE TABLE setting (
    line  TEXT NOT NULL,
    key   TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (line, key)
) STRICT, WITHOUT ROWID;
CREATE TABLE webhook (
    line     TEXT NOT NULL,
    key      TEXT NOT NULL,
    position INTEGER NOT NULL,
    dropped  INTEGER NOT NULL,
    PRIMARY KEY (line, key)
) STRICT, WITHOUT ROWID;
CREATE TABLE webhook_event (
    id                 INTEGER PRIMARY KEY AUTOINCREMENT,
    line               TEXT NOT NULL,
    kind               INTEGER NOT NULL,
    uid                TEXT NOT NULL UNIQUE,
    time               INTEGER NOT NULL,
    call               INTEGER,
    list               INTEGER,
    call_id            TEXT NOT NULL,
    device             TEXT NOT NULL,
    outgoing           INTEGER NOT NULL,
    number             TEXT NOT NULL,
    name               TEXT NOT NULL,
    redirecting_number TEXT NOT NULL,
    redirecting_name   TEXT NOT NULL,
    start              INTEGER,
    established        INTEGER
) STRICT;
CREATE INDEX contact_name ON contact (line, surname COLLATE NOCASE, first_name COLLATE NOCASE, id);
CREATE INDEX contact_number_contact ON contact_number (contact);
CREATE INDEX contact_external ON contact (line, external_id) WHERE external_id <> '';
CREATE INDEX party_lookup ON party (line, lookup);
CREATE UNIQUE INDEX call_identity ON call (line, call_id, start, part) WHERE call_id <> '';
CREATE INDEX call_party ON call (party, start DESC, id DESC, list, reason, duration);
CREATE INDEX call_redirecting ON call (redirecting) WHERE redirecting IS NOT NULL;
CREATE INDEX call_item_unviewed ON call_item (line) WHERE list = 0 AND viewed = 0;
CREATE TRIGGER call_added AFTER INSERT ON call WHEN NEW.item IS NOT NULL BEGIN
    UPDATE call_item SET calls = calls + 1 WHERE id = NEW.item;
END;
CREATE TRIGGER call_removed AFTER DELETE ON call WHEN OLD.item IS NOT NULL BEGIN
    UPDATE call_item SET calls = calls - 1 WHERE id = OLD.item;
END;
CREATE TRIGGER call_moved AFTER UPDATE OF item ON call WHEN OLD.item IS NOT NEW.item BEGIN
    UPDATE call_item SET calls = calls - 1 WHERE id = OLD.item;
    UPDATE call_item SET calls = calls + 1 WHERE id = NEW.item;
END;
CREATE INDEX call_of_list ON call (line, list, start, id, party, reason, duration);
CREATE INDEX call_of_item ON call (item, item_order, listed) WHERE item IS NOT NULL;
CREATE INDEX call_connected ON call (connected) WHERE connected <> party;
CREATE INDEX call_item_order ON call_item (line, list, sort_key, entry_id, id);
CREATE TRIGGER contact_removed AFTER DELETE ON contact BEGIN
    DELETE FROM contact_number WHERE contact = OLD.id;
END;
CREATE INDEX webhook_event_of_call ON webhook_event (call) WHERE call IS NOT NULL;
CREATE INDEX webhook_event_of_live_call ON webhook_event (call_id) WHERE call_id <> '';
CREATE TRIGGER webhook_call_removed AFTER DELETE ON call BEGIN
    DELETE FROM webhook_event WHERE call = OLD.id;
    DELETE FROM webhook_event WHERE call_id = OLD.call_id AND call_id <> '' AND line = OLD.line
        AND time >= OLD.start - 60 AND (OLD.ended IS NULL OR time <= OLD.ended + 60);
END;
DELETE FROM "sqlite_sequence";
INSERT INTO "sqlite_sequence" VALUES('call_item',8);
INSERT INTO "sqlite_sequence" VALUES('contact',1);
INSERT INTO "sqlite_sequence" VALUES('call',5);
INSERT INTO "sqlite_sequence" VALUES('access_token',1);
COMMIT;
PRAGMA application_id = 1128952430;
PRAGMA user_version = 7;
