-- A table of names kept as raw bytes, some in Shift_JIS and some in EUC-JP, as
-- an older system left them. Run from the top of the source tree with the
-- extension loaded (make demo does both).
CREATE TABLE legacy(id INTEGER PRIMARY KEY, raw BLOB);
INSERT INTO legacy(raw) VALUES
  (x'82B382AD82E7'),            -- さくら, Shift_JIS
  (x'C5ECB5FEA5BFA5EFA1BC'),    -- 東京タワー, EUC-JP
  (x'B1B2BDB8D8B0D1'),          -- ｱｲｽｸﾘｰﾑ, Shift_JIS halfwidth katakana
  (x'BBB3C5C4C2C0CFBA'),        -- 山田太郎, EUC-JP
  (x'82A082A882BC82E7'),        -- あおぞら, Shift_JIS
  (x'546F6B796F'),              -- Tokyo
  (x'A5ABA5BFA5ABA5CA'),        -- カタカナ, EUC-JP
  (x'889F8994');                -- 亜鉛, Shift_JIS

.headers on
.mode column
.print '-- Each blob: its encoding detected (auto-ja: Japanese candidates only), then decoded'
CREATE TABLE names AS
  SELECT id, varnice_detect(raw, 'auto-ja') AS encoding,
         varnice_decode(raw, varnice_detect(raw, 'auto-ja')) AS name
  FROM legacy;
SELECT id, hex(raw) AS bytes, encoding, name FROM names JOIN legacy USING (id);

.print
.print '-- Sorted by code unit, then in JIS order (kana before kanji, halfwidth first)'
SELECT group_concat(name, ' ') AS unicode_raw FROM (SELECT name FROM names ORDER BY name COLLATE UNICODE_RAW);
SELECT group_concat(name, ' ') AS jis FROM (SELECT name FROM names ORDER BY name COLLATE JIS);

.print
.print '-- Written for a system that wants ISO-2022-JP, and folded for searching'
-- ISO-2022-JP has no halfwidth katakana: widen them first, and let 'strict'
-- refuse anything still missing rather than write substitutes.
SELECT name, hex(varnice_encode(varnice_transform(name, 'fullwidth:Katakana'), 'ISO-2022-JP', 'strict'))
         AS iso2022jp,
       varnice_transform(name, 'fullwidth:Katakana,hiragana,upper') AS folded
FROM names ORDER BY name COLLATE JIS;

.print
.print '-- A whole file'
SELECT varnice_detect(readfile('examples/samples/japanese.iso2022jp.txt')) AS file_encoding,
       substr(varnice_decode(readfile('examples/samples/japanese.iso2022jp.txt'), 'auto'), 1, 12) AS starts;
