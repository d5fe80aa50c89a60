#include "host/database/Schema.h"

#include <iterator>

namespace host {
namespace {

constexpr const char* kSteps[] = {
    R"sql(
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
CREATE INDEX call_item_newest ON call_item (line, list, sort_key DESC, entry_id DESC, id DESC);
CREATE INDEX call_item_entry ON call_item (line, list, entry_id);

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

CREATE TABLE setting (
    line  TEXT NOT NULL,
    key   TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (line, key)
) STRICT, WITHOUT ROWID;

CREATE TABLE management_value (
    line  TEXT NOT NULL,
    key   TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (line, key)
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
CREATE INDEX contact_name ON contact (line, surname COLLATE NOCASE, first_name COLLATE NOCASE, id);

CREATE TABLE contact_number (
    line     TEXT NOT NULL,
    number   TEXT NOT NULL,
    contact  INTEGER NOT NULL REFERENCES contact (id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    PRIMARY KEY (line, number, contact, position)
) STRICT, WITHOUT ROWID;
CREATE INDEX contact_number_contact ON contact_number (contact);
)sql",
    R"sql(
CREATE INDEX contact_external ON contact (line, external_id) WHERE external_id <> '';

CREATE TABLE contact_number_rules (
    line  TEXT NOT NULL PRIMARY KEY,
    rules TEXT NOT NULL
) STRICT, WITHOUT ROWID;
)sql",
    R"sql(
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

CREATE TABLE approximate_end (
    line   TEXT NOT NULL,
    number TEXT NOT NULL,
    time   TEXT NOT NULL,
    PRIMARY KEY (line, number, time)
) STRICT, WITHOUT ROWID;
)sql",
    R"sql(
CREATE TABLE party (
    id     INTEGER PRIMARY KEY,
    line   TEXT NOT NULL,
    number TEXT NOT NULL,
    name   TEXT NOT NULL,
    lookup TEXT NOT NULL,
    search TEXT NOT NULL,
    UNIQUE (line, number, name)
) STRICT;
CREATE INDEX party_lookup ON party (line, lookup);

CREATE TABLE party_note (
    line   TEXT NOT NULL,
    number TEXT NOT NULL,
    note   TEXT NOT NULL,
    PRIMARY KEY (line, number)
) STRICT, WITHOUT ROWID;

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
CREATE UNIQUE INDEX call_identity ON call (line, call_id, start, part) WHERE call_id <> '';
-- The columns after the id let a page and the statistics be computed without the rows.
CREATE INDEX call_newest ON call (line, start DESC, id DESC, list, reason, party, duration);
CREATE INDEX call_newest_of_list ON call (line, list, start DESC, id DESC, duration);
CREATE INDEX call_party ON call (party, start DESC, id DESC, list, reason, duration);
CREATE INDEX call_connected ON call (connected) WHERE connected IS NOT NULL;
CREATE INDEX call_redirecting ON call (redirecting) WHERE redirecting IS NOT NULL;
CREATE INDEX call_of_item ON call (item, item_order DESC) WHERE item IS NOT NULL;
CREATE INDEX call_listed ON call (item, item_order DESC) WHERE listed = 1;

ALTER TABLE call_item ADD COLUMN calls INTEGER NOT NULL DEFAULT 0;
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

INSERT OR IGNORE INTO party (line, number, name, lookup, search)
SELECT occurrence.line, occurrence.number,
    trim(call_item.first_name || ' ' || call_item.surname),
    '', search_text(trim(call_item.first_name || ' ' || call_item.surname), occurrence.number)
FROM occurrence JOIN call_item ON call_item.id = occurrence.item;
INSERT OR IGNORE INTO party (line, number, name, lookup, search)
SELECT line, redirecting_number, redirecting_name, '', search_text(redirecting_name, redirecting_number)
FROM occurrence WHERE redirecting_number <> '' OR redirecting_name <> '';

INSERT INTO call (line, list, item, item_order, listed, call_id, part, start, duration, end_approximate, reason,
    party, redirecting, connected_number, text_c, text_d, time_and_date, log_target,
    presentation_a, presentation_b, presentation_c, presentation_d, duration_text, time_format,
    redirecting_number_presentation, redirecting_name_presentation, transfer_number_type, redirecting_reason,
    completed_elsewhere, group_text, line_key, substitute_number, feature_access_code,
    forwarded_to_number, forwarding_target, forwarding_reason)
WITH dated AS (
    SELECT occurrence.*, call_item.list AS its_list,
        trim(call_item.first_name || ' ' || call_item.surname) AS its_name,
        CASE WHEN time_and_date GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]?*'
            THEN coalesce(CAST(strftime('%s', time_and_date) AS INTEGER), 0) ELSE 0 END
        - CASE WHEN time_format = 1 AND substr(time_and_date, 11) NOT GLOB '*[-+Zz]*'
            THEN 60 * coalesce((SELECT CAST(value AS INTEGER) FROM management_value
                WHERE management_value.line = occurrence.line AND key = 'sntp-tz-offset'), 0)
            ELSE 0 END AS began
    FROM occurrence JOIN call_item ON call_item.id = occurrence.item
)
SELECT dated.line, its_list, item, -position, 1, call_id,
    row_number() OVER (PARTITION BY dated.line, call_id, began ORDER BY item, position) - 1, began,
    CASE WHEN instr(duration, ':') > 0
        THEN 60 * CAST(substr(duration, 1, instr(duration, ':') - 1) AS INTEGER)
            + CAST(substr(duration, instr(duration, ':') + 1) AS INTEGER)
        ELSE 0 END,
    EXISTS (SELECT 1 FROM approximate_end WHERE approximate_end.line = dated.line
        AND approximate_end.number = dated.number AND approximate_end.time = dated.time_and_date),
    CASE WHEN completed_elsewhere <> 0 THEN 6 ELSE 0 END,
    (SELECT id FROM party WHERE party.line = dated.line AND party.number = dated.number AND name = its_name),
    (SELECT id FROM party WHERE party.line = dated.line AND party.number = redirecting_number
        AND name = redirecting_name AND (redirecting_number <> '' OR redirecting_name <> '')),
    connected_number, text_c, text_d, time_and_date, log_target,
    presentation_a, presentation_b, presentation_c, presentation_d, duration, time_format,
    redirecting_number_presentation, redirecting_name_presentation, transfer_number_type, redirecting_reason,
    completed_elsewhere, group_text, line_key, substitute_number, feature_access_code,
    forwarded_to_number, forwarding_target, forwarding_reason
FROM dated ORDER BY began, item, position DESC;

DROP TABLE occurrence;
DROP TABLE approximate_end;
-- The next start computes the numbers of contacts and parties again.
DELETE FROM contact_number_rules;

ALTER TABLE contact ADD COLUMN search TEXT NOT NULL DEFAULT '';
UPDATE contact SET search = search_text(trim(first_name || ' ' || surname), '');

ALTER TABLE live_call ADD COLUMN reason INTEGER NOT NULL DEFAULT 0;
)sql",
    R"sql(
-- Each index costs each filed call a page of the log. New rows come at an end of these indexes: at a begin
-- SQLite moves the cells of several pages.
DROP INDEX call_newest;
DROP INDEX call_newest_of_list;
-- The columns after the id let a page and the counts be computed without the rows.
CREATE INDEX call_of_list ON call (line, list, start, id, party, reason, duration);
DROP INDEX call_listed;
DROP INDEX call_of_item;
CREATE INDEX call_of_item ON call (item, item_order, listed) WHERE item IS NOT NULL;
DROP INDEX call_connected;
CREATE INDEX call_connected ON call (connected) WHERE connected <> party;
-- A list is short: its index has the entry ids too.
DROP INDEX call_item_entry;
DROP INDEX call_item_newest;
CREATE INDEX call_item_order ON call_item (line, list, sort_key, entry_id, id);

CREATE TRIGGER contact_removed AFTER DELETE ON contact BEGIN
    DELETE FROM contact_number WHERE contact = OLD.id;
END;
)sql",
    R"sql(
CREATE TABLE access_token (
    id      INTEGER PRIMARY KEY AUTOINCREMENT,
    hash    TEXT NOT NULL UNIQUE,
    name    TEXT NOT NULL UNIQUE,
    scope   TEXT NOT NULL,
    line    TEXT NOT NULL,
    created INTEGER NOT NULL,
    expires INTEGER
) STRICT;
)sql",
    R"sql(
-- The events that wait for webhooks, in the order in which they are delivered. One about a filed call has the
-- call's row only: what is sent is read from there. Those of live calls have their parties.
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
CREATE INDEX webhook_event_of_call ON webhook_event (call) WHERE call IS NOT NULL;
CREATE INDEX webhook_event_of_live_call ON webhook_event (call_id) WHERE call_id <> '';

CREATE TABLE webhook (
    line     TEXT NOT NULL,
    key      TEXT NOT NULL,
    position INTEGER NOT NULL,
    dropped  INTEGER NOT NULL,
    PRIMARY KEY (line, key)
) STRICT, WITHOUT ROWID;

-- What is deleted is not sent. A switch uses the id of a call again later: the time tells them apart.
CREATE TRIGGER webhook_call_removed AFTER DELETE ON call BEGIN
    DELETE FROM webhook_event WHERE call = OLD.id;
    DELETE FROM webhook_event WHERE call_id = OLD.call_id AND call_id <> '' AND line = OLD.line
        AND time >= OLD.start - 60 AND (OLD.ended IS NULL OR time <= OLD.ended + 60);
END;
)sql",
    R"sql(
-- The lines that the configuration does not name.
CREATE TABLE line (
    device  TEXT NOT NULL PRIMARY KEY,
    name    TEXT NOT NULL,
    switch  TEXT NOT NULL,
    removed INTEGER NOT NULL
) STRICT, WITHOUT ROWID;
-- A webhook gets the events of all lines in one order.
UPDATE OR REPLACE webhook SET line = '';
)sql",
};

}  // namespace

int Schema::version() noexcept {
    return static_cast<int>(std::size(kSteps));
}

const char* Schema::step(int version) noexcept {
    return kSteps[version];
}

}  // namespace host
