// The server's side of the Jet dialect: names, types and the functions created with
// the schema. The statements themselves come from the generator SqliteGenerator.cpp
// shares with this dialect; the functions here give the results Functions.cpp gives on
// the embedded store (Italian numbers and dates, Jet's Null rules, VB's error numbers
// raised as "jet-error:N:" for errorFromMessage).
#include "store/jet/PostgresGenerator.h"

namespace store::jet {

Generated generatePostgres(const Statement& st, const Lexed& lexed, const SchemaInfo* schema)
{
    return generate(st, lexed, schema, Dialect::Postgres);
}

QString postgresIdent(const QString& name)
{
    QString quoted = name;
    quoted.replace(u'"', QStringLiteral("\"\""));
    return u'"' + quoted + u'"';
}

QString postgresType(const QString& sqliteDecl)
{
    QString rest = sqliteDecl.trimmed();
    if (rest.startsWith(QLatin1String("INTEGER PRIMARY KEY AUTOINCREMENT")))
        return QStringLiteral("serial PRIMARY KEY");
    const qsizetype space = rest.indexOf(u' ');
    QString type = space < 0 ? rest : rest.left(space);
    rest = space < 0 ? QString() : rest.mid(space);
    rest.replace(QLatin1String(" COLLATE JET"), QLatin1String(" COLLATE jet"));
    const QString upper = type.toUpper();
    static const std::pair<const char*, const char*> domains[] = {
        {"LONG", "jet_long"},         {"SMALLINT", "jet_smallint"}, {"BYTE", "jet_byte"}, {"DOUBLE", "jet_double"},
        {"CURRENCY", "jet_currency"}, {"DATE", "jet_date"},         {"BIT", "jet_bit"},   {"LONGTEXT", "jet_memo"},
        {"COUNTER", "jet_long"},      {"INTEGER", "jet_long"}};
    for (const auto& [jet, pg] : domains)
        if (upper == QLatin1String(jet)) {
            if (upper == QLatin1String("LONGTEXT"))
                rest.remove(QLatin1String(" COLLATE jet")); // the domain carries it
            return QLatin1String(pg) + rest;
        }
    // CHAR(n) as SQLite keeps it: the text as written, not padded.
    if (upper.startsWith(QLatin1String("VARCHAR")) || upper.startsWith(QLatin1String("CHAR")))
        return QStringLiteral("varchar") + type.mid(upper.startsWith(QLatin1String("VAR")) ? 7 : 4) + rest;
    return type + rest;
}

QString postgresCounterTrigger(const QString& table, const QString& column)
{
    QString name = table + u'_' + column + QStringLiteral("_counter");
    QString literalColumn = column;
    literalColumn.replace(u'\'', QStringLiteral("''"));
    return QStringLiteral("CREATE TRIGGER %1 BEFORE INSERT ON %2 FOR EACH ROW EXECUTE FUNCTION jet_counter('%3')")
        .arg(postgresIdent(name), postgresIdent(table), literalColumn);
}

QString jetDeclOfPostgres(const QString& udtOrType, int length, bool serial)
{
    if (serial)
        return QStringLiteral("COUNTER");
    static const std::pair<const char*, const char*> names[] = {
        {"jet_long", "LONG"},     {"jet_smallint", "SMALLINT"}, {"jet_byte", "BYTE"},
        {"jet_double", "DOUBLE"}, {"jet_currency", "CURRENCY"}, {"jet_date", "DATE"},
        {"jet_bit", "BIT"},       {"jet_memo", "LONGTEXT"},     {"integer", "LONG"},
        {"bigint", "LONG"},       {"smallint", "SMALLINT"},     {"double precision", "DOUBLE"},
        {"text", "LONGTEXT"},     {"numeric", "DOUBLE"},        {"real", "DOUBLE"}};
    for (const auto& [pg, jet] : names)
        if (udtOrType == QLatin1String(pg))
            return QLatin1String(jet);
    if (udtOrType == QLatin1String("character varying"))
        return QStringLiteral("VARCHAR(%1)").arg(length > 0 ? length : 255);
    if (udtOrType == QLatin1String("character"))
        return QStringLiteral("CHAR(%1)").arg(length > 0 ? length : 255);
    return udtOrType.toUpper();
}

namespace {

// Each entry one statement. Texts go through the "und-x-icu" collation inside the
// functions: the server refuses LIKE, regular expressions and substring searches under
// the nondeterministic "jet" collation the columns carry.
const char* const FunctionSql[] = {
    "CREATE SCHEMA IF NOT EXISTS jet",
    "SET LOCAL search_path = jet",
    R"(CREATE COLLATION IF NOT EXISTS jet (provider = icu, locale = 'und-u-ks-level2', deterministic = false))",
    R"(DO $$ BEGIN
  CREATE DOMAIN jet_long AS integer; CREATE DOMAIN jet_smallint AS smallint; CREATE DOMAIN jet_byte AS smallint;
  CREATE DOMAIN jet_double AS double precision; CREATE DOMAIN jet_currency AS double precision;
  CREATE DOMAIN jet_date AS double precision; CREATE DOMAIN jet_bit AS smallint;
  CREATE DOMAIN jet_memo AS text COLLATE jet;
EXCEPTION WHEN duplicate_object THEN NULL; END $$)",
    // An autonumber keeps its sequence ahead of any value written into it.
    R"(CREATE OR REPLACE FUNCTION jet_counter() RETURNS trigger LANGUAGE plpgsql AS $$
DECLARE col text COLLATE "und-x-icu" := TG_ARGV[0]; seq text COLLATE "und-x-icu"; v bigint;
BEGIN
  seq := pg_get_serial_sequence(format('%I.%I', TG_TABLE_SCHEMA, TG_TABLE_NAME), col);
  v := (to_jsonb(NEW) ->> col)::bigint;
  IF v IS NULL THEN
    NEW := jsonb_populate_record(NEW, jsonb_build_object(col, nextval(seq)));
  ELSIF v > coalesce(pg_sequence_last_value(seq::regclass), 0) THEN
    PERFORM setval(seq, v);
  END IF;
  RETURN NEW;
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_fail(n bigint) RETURNS void LANGUAGE plpgsql AS $$
BEGIN RAISE EXCEPTION 'jet-error:%:', n; END $$)",
    // Numbers as Jet reads a text under Italian settings ("1.234,50"); empty is Null.
    R"(CREATE OR REPLACE FUNCTION jet_num(v text) RETURNS float8 LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE s text COLLATE "und-x-icu" := btrim(v COLLATE "und-x-icu"); neg boolean := false;
BEGIN
  IF s IS NULL OR s = '' THEN RETURN NULL; END IF;
  IF s ~ '^\(.*\)$' THEN neg := true; s := btrim(substr(s, 2, length(s) - 2)); END IF;
  IF left(s, 1) IN ('-', '+') THEN neg := neg <> (left(s, 1) = '-'); s := btrim(substr(s, 2)); END IF;
  IF s ~ '^[0-9.]*(,[0-9]*)?([eE][-+]?[0-9]+)?$' AND s ~ '^[.]?[0-9]' THEN
    s := replace(replace(s, '.', ''), ',', '.');
    RETURN CASE WHEN neg THEN -s::float8 ELSE s::float8 END;
  END IF;
  RAISE EXCEPTION 'jet-error:-2147217913:Tipo di dati non corrispondenti nell''espressione criterio.';
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_num(v float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT v')",
    // A number of an arithmetic: Null stays Null, a text that is no number is an error.
    R"(CREATE OR REPLACE FUNCTION jet_n(v text) RETURNS float8 LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
  IF v IS NULL THEN RETURN NULL; END IF;
  IF btrim(v) = '' THEN
    RAISE EXCEPTION 'jet-error:-2147217913:Tipo di dati non corrispondenti nell''espressione criterio.';
  END IF;
  RETURN jet_num(v);
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_n(v float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT v')",
    // CStr of a number: up to 15 significant digits, the Italian comma, E+nn beyond.
    R"(CREATE OR REPLACE FUNCTION jet_numtext(v float8) RETURNS text LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE e int; n numeric;
BEGIN
  IF v IS NULL THEN RETURN NULL; END IF;
  IF v = 0 THEN RETURN '0'; END IF;
  e := floor(log(abs(v)::numeric));
  n := round(v::numeric, 14 - e);
  IF abs(n) >= power(10::numeric, e + 1) THEN e := e + 1; END IF;
  IF e >= 15 OR e < -4 THEN
    RETURN replace(trim_scale(round(n / power(10::numeric, e), 14))::text, '.', ',') || 'E' ||
           CASE WHEN e < 0 THEN '-' ELSE '+' END || lpad(abs(e)::text, 2, '0');
  END IF;
  RETURN replace(trim_scale(n)::text, '.', ',');
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_dayof(v float8) RETURNS date LANGUAGE sql IMMUTABLE AS $$
SELECT date '1899-12-30' + (trunc(v) + CASE WHEN round(abs(v - trunc(v)) * 86400) >= 86400 THEN sign(v) ELSE 0 END)::int $$)",
    R"(CREATE OR REPLACE FUNCTION jet_secs(v float8) RETURNS int LANGUAGE sql IMMUTABLE AS $$
SELECT (round(abs(v - trunc(v)) * 86400)::int) % 86400 $$)",
    // CStr of a date: dd/mm/yyyy, the time after it unless midnight, the time alone on day 0.
    R"(CREATE OR REPLACE FUNCTION jet_datetext(v float8) RETURNS text LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE d date := jet_dayof(v); s int := jet_secs(v); t text COLLATE "und-x-icu";
BEGIN
  IF v IS NULL THEN RETURN NULL; END IF;
  t := lpad((s / 3600)::text, 2, '0') || '.' || lpad((s / 60 % 60)::text, 2, '0') || '.' || lpad((s % 60)::text, 2, '0');
  IF d = date '1899-12-30' THEN RETURN t; END IF;
  RETURN to_char(d, 'DD/MM/YYYY') || CASE WHEN s = 0 THEN '' ELSE ' ' || t END;
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_cstr(flags bigint, v float8) RETURNS text LANGUAGE sql IMMUTABLE AS $$
SELECT CASE WHEN flags & 1 = 1 THEN jet_datetext(v) ELSE jet_numtext(v) END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_cstr(flags bigint, v text) RETURNS text LANGUAGE sql IMMUTABLE AS 'SELECT v')",
    R"(CREATE OR REPLACE FUNCTION jet_text(v text) RETURNS text LANGUAGE sql IMMUTABLE AS 'SELECT v')",
    R"(CREATE OR REPLACE FUNCTION jet_text(v float8) RETURNS text LANGUAGE sql IMMUTABLE AS 'SELECT jet_numtext(v)')",
    // "&": one Null counts as "", all Null give Null.
    R"(CREATE OR REPLACE FUNCTION jet_concat(flags bigint, VARIADIC p text[]) RETURNS text LANGUAGE sql IMMUTABLE AS $$
SELECT CASE WHEN bool_and(x IS NULL) THEN NULL ELSE string_agg(coalesce(x, ''), '' ORDER BY i) END
FROM unnest(p) WITH ORDINALITY AS t(x, i) $$)",
    // Like with Jet's wildcards: % _ [abc] [a-z] [!...]; case ignored, accents kept.
    R"(CREATE OR REPLACE FUNCTION jet_like(a text, p text) RETURNS boolean LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE re text COLLATE "und-x-icu" := '^'; i int := 1; c text COLLATE "und-x-icu"; j int; n int := length(p);
BEGIN
  IF a IS NULL OR p IS NULL THEN RETURN NULL; END IF;
  WHILE i <= n LOOP
    c := substr(p, i, 1);
    IF c = '%' THEN re := re || '.*';
    ELSIF c = '_' THEN re := re || '.';
    ELSIF c = '[' THEN
      j := strpos(substr(p COLLATE "und-x-icu", i + 1), ']');
      IF j = 0 THEN re := re || '\['; ELSE
        c := substr(p, i + 1, j - 1);
        IF left(c, 1) = '!' THEN c := '^' || substr(c, 2); END IF;
        re := re || '[' || regexp_replace(c COLLATE "und-x-icu", '([\\\]\[])', '\\\1', 'g') || ']';
        i := i + j;
      END IF;
    ELSE re := re || regexp_replace(c COLLATE "und-x-icu", '([.^$*+?()\[\]{}|\\])', '\\\1');
    END IF;
    i := i + 1;
  END LOOP;
  RETURN lower(a COLLATE "und-x-icu") ~ lower((re || '$') COLLATE "und-x-icu");
END $$)",
    // Val: the leading number of a text, "." as the decimal point, blanks skipped.
    R"(CREATE OR REPLACE FUNCTION jet_val(v text) RETURNS float8 LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE s text COLLATE "und-x-icu"; m text COLLATE "und-x-icu";
BEGIN
  IF v IS NULL THEN PERFORM jet_fail(94); END IF;
  s := regexp_replace(v COLLATE "und-x-icu", '[ \t\r\n]', '', 'g');
  IF s ~* '^&h[0-9a-f]+' THEN RETURN ('x' || lpad(substring(s from '(?i)^&h([0-9a-f]+)'), 16, '0'))::bit(64)::bigint; END IF;
  m := substring(s from '^[-+]?[0-9]*\.?[0-9]*(?:[eEdD][-+]?[0-9]+)?');
  IF m IS NULL OR m !~ '[0-9]' THEN RETURN 0; END IF;
  IF m !~ '[0-9][eEdD]' THEN m := regexp_replace(m, '[eEdD].*$', ''); END IF;
  RETURN translate(m, 'dD', 'ee')::float8;
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_val(v float8) RETURNS float8 LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN IF v IS NULL THEN PERFORM jet_fail(94); END IF; RETURN v; END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_len(v text) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT length(v)')",
    R"(CREATE OR REPLACE FUNCTION jet_count_arg(n float8) RETURNS int LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
  IF n IS NULL THEN PERFORM jet_fail(94); END IF;
  IF n < 0 THEN PERFORM jet_fail(5); END IF;
  RETURN round(n);
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_left(v text, n float8) RETURNS text LANGUAGE sql IMMUTABLE AS
'SELECT left(v, jet_count_arg(n))')",
    R"(CREATE OR REPLACE FUNCTION jet_right(v text, n float8) RETURNS text LANGUAGE sql IMMUTABLE AS
'SELECT CASE WHEN jet_count_arg(n) = 0 THEN (CASE WHEN v IS NULL THEN NULL ELSE '''' END) ELSE right(v, jet_count_arg(n)) END')",
    R"(CREATE OR REPLACE FUNCTION jet_mid(v text, s float8, n float8 DEFAULT NULL) RETURNS text LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
  IF s IS NULL THEN PERFORM jet_fail(94); END IF;
  IF s < 1 THEN PERFORM jet_fail(5); END IF;
  IF n IS NULL THEN RETURN substr(v, round(s)::int); END IF;
  RETURN substr(v, round(s)::int, jet_count_arg(n));
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_trim(v text) RETURNS text LANGUAGE sql IMMUTABLE AS $$SELECT btrim(v, ' ')$$)",
    R"(CREATE OR REPLACE FUNCTION jet_ltrim(v text) RETURNS text LANGUAGE sql IMMUTABLE AS $$SELECT ltrim(v, ' ')$$)",
    R"(CREATE OR REPLACE FUNCTION jet_rtrim(v text) RETURNS text LANGUAGE sql IMMUTABLE AS $$SELECT rtrim(v, ' ')$$)",
    R"(CREATE OR REPLACE FUNCTION jet_ucase(v text) RETURNS text LANGUAGE sql IMMUTABLE AS
$$SELECT upper(v COLLATE "und-x-icu")$$)",
    R"(CREATE OR REPLACE FUNCTION jet_lcase(v text) RETURNS text LANGUAGE sql IMMUTABLE AS
$$SELECT lower(v COLLATE "und-x-icu")$$)",
    R"(CREATE OR REPLACE FUNCTION jet_instr(s text, f text) RETURNS int LANGUAGE sql IMMUTABLE AS
$$SELECT strpos(lower(s COLLATE "und-x-icu"), lower(f COLLATE "und-x-icu"))$$)",
    R"(CREATE OR REPLACE FUNCTION jet_instr(st float8, s text, f text) RETURNS int LANGUAGE sql IMMUTABLE AS $$
SELECT CASE WHEN p = 0 THEN 0 ELSE p + greatest(jet_count_arg(st)::int, 1) - 1 END
FROM (SELECT strpos(lower(substr(s, greatest(jet_count_arg(st)::int, 1)) COLLATE "und-x-icu"), lower(f COLLATE "und-x-icu")) AS p) q $$)",
    R"(CREATE OR REPLACE FUNCTION jet_replace(s text, f text, r text) RETURNS text LANGUAGE sql IMMUTABLE AS
$$SELECT replace(s COLLATE "und-x-icu", f COLLATE "und-x-icu", coalesce(r, ''))$$)",
    // CDate: Italian day/month/year (or year-month-day), an optional time h.n[.s] or h:n[:s].
    R"(CREATE OR REPLACE FUNCTION jet_cdate(v text) RETURNS float8 LANGUAGE plpgsql STABLE AS $$
DECLARE s text COLLATE "und-x-icu" := btrim(v COLLATE "und-x-icu"); t float8 := 0; m text[] COLLATE "und-x-icu"; p text[] COLLATE "und-x-icu"; y int; mo int; d int; h int;
BEGIN
  IF v IS NULL THEN RETURN NULL; END IF;
  m := regexp_match(s, '(?:^|\s)(\d{1,2})[.:](\d{1,2})(?:[.:](\d{1,2}))?\s*([AaPp][Mm]?)?$');
  IF m IS NOT NULL THEN
    h := m[1]::int;
    IF m[4] IS NOT NULL THEN
      IF upper(left(m[4], 1)) = 'P' AND h < 12 THEN h := h + 12; ELSIF upper(left(m[4], 1)) = 'A' AND h = 12 THEN h := 0; END IF;
    END IF;
    IF h > 23 OR m[2]::int > 59 OR coalesce(m[3], '0')::int > 59 THEN PERFORM jet_fail(13); END IF;
    t := (h * 3600 + m[2]::int * 60 + coalesce(m[3], '0')::int) / 86400.0;
    s := btrim(regexp_replace(s, '(?:^|\s)(\d{1,2})[.:](\d{1,2})(?:[.:](\d{1,2}))?\s*([AaPp][Mm]?)?$', ''));
    IF s = '' THEN RETURN t; END IF;
  END IF;
  p := regexp_split_to_array(s, '[/\-,\s]+');
  IF s = '' OR array_length(p, 1) NOT IN (2, 3) OR array_to_string(p, '') !~ '^\d+$' THEN PERFORM jet_fail(13); END IF;
  IF array_length(p, 1) = 2 THEN
    d := p[1]::int; mo := p[2]::int; y := extract(year from jet_dayof(jet_now()));
  ELSIF length(p[1]) >= 3 THEN
    y := p[1]::int; mo := p[2]::int; d := p[3]::int;
  ELSE
    d := p[1]::int; mo := p[2]::int; y := p[3]::int;
    IF length(p[3]) <= 2 THEN y := y + CASE WHEN y < 30 THEN 2000 ELSE 1900 END; END IF;
  END IF;
  IF mo > 12 AND d <= 12 THEN h := mo; mo := d; d := h; END IF;
  BEGIN
    RETURN (make_date(y, mo, d) - date '1899-12-30') + t;
  EXCEPTION WHEN others THEN PERFORM jet_fail(13);
  END;
  RETURN NULL;
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_cdate(v float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT v')",
    // The clock: the workstation's (vb::Clock), handed over in jet.now before a statement that reads it.
    R"(CREATE OR REPLACE FUNCTION jet_now() RETURNS float8 LANGUAGE sql STABLE AS $$
SELECT coalesce(nullif(current_setting('jet.now', true), '')::float8,
  round(extract(epoch from localtimestamp - timestamp '1899-12-30'))::float8 / 86400) $$)",
    R"(CREATE OR REPLACE FUNCTION jet_date() RETURNS float8 LANGUAGE sql STABLE AS 'SELECT floor(jet_now())')",
    R"(CREATE OR REPLACE FUNCTION jet_time() RETURNS float8 LANGUAGE sql STABLE AS 'SELECT jet_now() - floor(jet_now())')",
    R"(CREATE OR REPLACE FUNCTION jet_year(v float8) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT extract(year from jet_dayof(v))::int')",
    R"(CREATE OR REPLACE FUNCTION jet_month(v float8) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT extract(month from jet_dayof(v))::int')",
    R"(CREATE OR REPLACE FUNCTION jet_day(v float8) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT extract(day from jet_dayof(v))::int')",
    R"(CREATE OR REPLACE FUNCTION jet_hour(v float8) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT jet_secs(v) / 3600')",
    R"(CREATE OR REPLACE FUNCTION jet_minute(v float8) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT jet_secs(v) / 60 % 60')",
    R"(CREATE OR REPLACE FUNCTION jet_second(v float8) RETURNS int LANGUAGE sql IMMUTABLE AS 'SELECT jet_secs(v) % 60')",
    R"(CREATE OR REPLACE FUNCTION jet_weekday(v float8, first float8 DEFAULT 1) RETURNS int LANGUAGE sql IMMUTABLE AS
'SELECT (extract(dow from jet_dayof(v))::int + 1 - coalesce(round(first)::int, 1) + 7) % 7 + 1')",
    R"(CREATE OR REPLACE FUNCTION jet_int(v float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT floor(v)')",
    R"(CREATE OR REPLACE FUNCTION jet_fix(v float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT trunc(v)')",
    R"(CREATE OR REPLACE FUNCTION jet_cdbl(v float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT v')",
    // VB's rounding: half to even.
    R"(CREATE OR REPLACE FUNCTION jet_round(v float8, places float8 DEFAULT 0) RETURNS float8 LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE sc float8 := power(10, coalesce(round(places), 0)); x float8;
BEGIN
  IF v IS NULL THEN RETURN NULL; END IF;
  x := v * sc;
  RETURN CASE WHEN abs(x - trunc(x)) = 0.5 THEN 2 * round(x / 2) ELSE round(x) END / sc;
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_clng(v float8) RETURNS bigint LANGUAGE sql IMMUTABLE AS 'SELECT jet_round(v)::bigint')",
    R"(CREATE OR REPLACE FUNCTION jet_cint(v float8) RETURNS bigint LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN IF abs(jet_round(v)) > 32767 AND jet_round(v) <> -32768 THEN PERFORM jet_fail(6); END IF; RETURN jet_round(v)::bigint; END $$)",
    // Format: the date tokens (d dd m mm yyyy yy h hh n nn s ss), and the number patterns
    // "Standard", "Fixed", "0.00", "#,##0.00" with Italian separators.
    R"(CREATE OR REPLACE FUNCTION jet_format(flags bigint, v float8, f text DEFAULT '') RETURNS text LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE out text COLLATE "und-x-icu" := ''; i int := 1; c text COLLATE "und-x-icu"; run int; n int; d date; s int; dec int; grp boolean; num text COLLATE "und-x-icu"; ip text COLLATE "und-x-icu"; fp text COLLATE "und-x-icu";
  pat text COLLATE "und-x-icu" := coalesce(f COLLATE "und-x-icu", ''); afterHour boolean := false;
BEGIN
  IF v IS NULL THEN RETURN NULL; END IF;
  IF pat = '' THEN RETURN CASE WHEN flags & 1 = 1 THEN jet_datetext(v) ELSE jet_numtext(v) END; END IF;
  IF flags & 1 = 1 OR (pat ~* '[dmyhns]' AND pat !~ '[0#]' AND lower(pat) NOT IN ('standard', 'fixed', 'general number')) THEN
    d := jet_dayof(v); s := jet_secs(v); n := length(pat);
    WHILE i <= n LOOP
      c := substr(pat, i, 1); run := 1;
      WHILE i + run <= n AND lower(substr(pat, i + run, 1)) = lower(c) LOOP run := run + 1; END LOOP;
      CASE lower(c)
        WHEN 'd' THEN out := out || CASE WHEN run >= 2 THEN to_char(d, 'DD') ELSE extract(day from d)::text END;
        WHEN 'y' THEN out := out || CASE WHEN run >= 3 THEN to_char(d, 'YYYY') ELSE to_char(d, 'YY') END;
        WHEN 'm' THEN
          IF afterHour THEN out := out || CASE WHEN run >= 2 THEN lpad((s / 60 % 60)::text, 2, '0') ELSE (s / 60 % 60)::text END;
          ELSE out := out || CASE WHEN run >= 2 THEN to_char(d, 'MM') ELSE extract(month from d)::text END; END IF;
        WHEN 'h' THEN out := out || CASE WHEN run >= 2 THEN lpad((s / 3600)::text, 2, '0') ELSE (s / 3600)::text END; afterHour := true;
        WHEN 'n' THEN out := out || CASE WHEN run >= 2 THEN lpad((s / 60 % 60)::text, 2, '0') ELSE (s / 60 % 60)::text END;
        WHEN 's' THEN out := out || CASE WHEN run >= 2 THEN lpad((s % 60)::text, 2, '0') ELSE (s % 60)::text END;
        WHEN ':' THEN out := out || repeat('.', run);
        ELSE out := out || substr(pat, i, run);
      END CASE;
      IF lower(c) IN ('d', 'y') THEN afterHour := false; END IF;
      i := i + run;
    END LOOP;
    RETURN out;
  END IF;
  IF lower(pat) = 'standard' THEN dec := 2; grp := true;
  ELSIF lower(pat) = 'fixed' THEN dec := 2; grp := false;
  ELSIF lower(pat) = 'general number' THEN RETURN jet_numtext(v);
  ELSE
    dec := coalesce(length(substring(pat from '\.([0#]+)')), 0);
    grp := split_part(pat, '.', 1) LIKE '%,%';
  END IF;
  num := round(abs(v)::numeric, dec)::text;
  ip := split_part(num, '.', 1); fp := split_part(num, '.', 2);
  IF grp THEN ip := regexp_replace(ip, '(\d)(?=(\d{3})+$)', '\1.', 'g'); END IF;
  IF ip = '0' AND pat !~ '0[.,]|0$' AND lower(pat) NOT IN ('standard', 'fixed') THEN ip := ''; END IF;
  RETURN CASE WHEN v < 0 AND round(abs(v)::numeric, dec) <> 0 THEN '-' ELSE '' END || ip || CASE WHEN dec > 0 THEN ',' || fp ELSE '' END;
END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_format(flags bigint, v text, f text DEFAULT '') RETURNS text LANGUAGE plpgsql STABLE AS $$
BEGIN
  IF v IS NULL THEN RETURN NULL; END IF;
  IF coalesce(f, '') = '' THEN RETURN v; END IF;
  BEGIN RETURN jet_format(0, jet_num(v), f); EXCEPTION WHEN others THEN NULL; END;
  BEGIN RETURN jet_format(1, jet_cdate(v), f); EXCEPTION WHEN others THEN NULL; END;
  RETURN v;
END $$)",
    // Arithmetic on values of no known type: Null gives Null, numeric texts are numbers,
    // "+" of two texts joins them, division by zero is 11.
    R"(CREATE OR REPLACE FUNCTION jet_add(a text, b text) RETURNS text LANGUAGE sql IMMUTABLE AS 'SELECT a || b')",
    R"(CREATE OR REPLACE FUNCTION jet_div_check(b float8) RETURNS float8 LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN IF b = 0 THEN PERFORM jet_fail(11); END IF; RETURN b; END $$)",
    R"(CREATE OR REPLACE FUNCTION jet_neg(a text) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT -jet_n(a)')",
    R"(CREATE OR REPLACE FUNCTION jet_neg(a float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT -a')",
    R"(CREATE OR REPLACE FUNCTION jet_pow(a float8, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT power(a, b)')",
    R"(CREATE OR REPLACE FUNCTION jet_intdiv(a float8, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS
'SELECT trunc(jet_round(a) / jet_div_check(jet_round(b)))')",
    R"(CREATE OR REPLACE FUNCTION jet_mod(a float8, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS
'SELECT (jet_round(a)::numeric % jet_div_check(jet_round(b))::numeric)::float8')",
    R"(CREATE OR REPLACE FUNCTION jet_div(a float8, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT a / jet_div_check(b)')",
    R"(CREATE OR REPLACE FUNCTION jet_add(a float8, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT a + b')",
    R"(CREATE OR REPLACE FUNCTION jet_sub(a float8, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT a - b')",
    R"(CREATE OR REPLACE FUNCTION jet_mul(a float8, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS 'SELECT a * b')",
};

// The functions of one number and of two numbers that also take texts (read with jet_n).
const char* const NumberFunctions[] = {"jet_year", "jet_month", "jet_hour", "jet_minute", "jet_second",
                                       "jet_int",  "jet_fix",   "jet_cdbl", "jet_clng",   "jet_cint"};
const char* const PairFunctions[] = {"jet_sub", "jet_mul", "jet_div", "jet_intdiv", "jet_mod", "jet_pow"};

} // namespace

QStringList postgresFunctionStatements()
{
    QStringList out;
    for (const char* sql : FunctionSql)
        out << QString::fromUtf8(sql);
    for (const char* f : NumberFunctions) {
        const bool date = qstrncmp(f, "jet_c", 5) != 0 && qstrcmp(f, "jet_int") != 0 && qstrcmp(f, "jet_fix") != 0;
        out << QStringLiteral(
                   "CREATE OR REPLACE FUNCTION %1(v text) RETURNS %2 LANGUAGE sql STABLE AS 'SELECT %1(%3(v))'")
                   .arg(QLatin1String(f),
                        QLatin1String(qstrcmp(f, "jet_clng") == 0 || qstrcmp(f, "jet_cint") == 0 ? "bigint"
                                      : date                                                     ? "int"
                                                                                                 : "float8"),
                        QLatin1String(date ? "jet_cdate" : "jet_n"));
    }
    out << QStringLiteral(
        "CREATE OR REPLACE FUNCTION jet_weekday(v text, first float8 DEFAULT 1) RETURNS int LANGUAGE sql "
        "STABLE AS 'SELECT jet_weekday(jet_cdate(v), first)'");
    out << QStringLiteral("CREATE OR REPLACE FUNCTION jet_add(a text, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE "
                          "AS 'SELECT jet_n(a) + b'");
    out << QStringLiteral("CREATE OR REPLACE FUNCTION jet_add(a float8, b text) RETURNS float8 LANGUAGE sql IMMUTABLE "
                          "AS 'SELECT a + jet_n(b)'");
    for (const char* f : PairFunctions) {
        out << QStringLiteral("CREATE OR REPLACE FUNCTION %1(a text, b text) RETURNS float8 LANGUAGE sql IMMUTABLE AS "
                              "'SELECT %1(jet_n(a), jet_n(b))'")
                   .arg(QLatin1String(f));
        out << QStringLiteral(
                   "CREATE OR REPLACE FUNCTION %1(a text, b float8) RETURNS float8 LANGUAGE sql IMMUTABLE AS "
                   "'SELECT %1(jet_n(a), b)'")
                   .arg(QLatin1String(f));
        out << QStringLiteral(
                   "CREATE OR REPLACE FUNCTION %1(a float8, b text) RETURNS float8 LANGUAGE sql IMMUTABLE AS "
                   "'SELECT %1(a, jet_n(b))'")
                   .arg(QLatin1String(f));
    }
    out << QStringLiteral("SET LOCAL search_path = public, jet"); // the plant's tables go to public
    return out;
}

} // namespace store::jet
