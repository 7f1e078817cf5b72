// The translator's behaviour, table by table: shapes, errors, output names
// and hidden rowids, the dialect's operators and functions run on SQLite,
// DDL, and criteria strings.
#include <functional>
#include <map>
#include <strings.h>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/core/error.h"
#include "test_book.h"

namespace zelvo::dao::jet::testing {
namespace {

int ErrorOf(const std::function<void()>& f, std::string* text = nullptr) {
    try {
        f();
    } catch (const Error& e) {
        if (text) *text = e.description();
        return e.number();
    }
    return 0;
}

// ---------------------------------------------------------------- shapes

TEST(Parameterize, TextsDifferingOnlyInLiteralsShareAShape) {
    struct Case {
        const char* a;
        const char* b;
        bool same;
    };
    const Case cases[] = {
        {"[Personal ID]=1", "[Personal ID]=250", true},
        {"x=\"a\"", "x=\"a much longer text\"", true},
        {"x=\"a\"", "x='b'", true},
        {"x=\"a\"", "x=1", false},  // a string and a number translate differently
        {"[Personal ID]=1", "[Owner ID]=1", false},
        {"Select * from [Room 101]", "Select * from [Room 102]", false},  // names are not literals
    };
    for (const Case& c : cases)
        EXPECT_EQ(Parameterize(c.a).key == Parameterize(c.b).key, c.same) << c.a << " / " << c.b;
}

TEST(Parameterize, LiftsEachLiteralWithItsKind) {
    Shape s = Parameterize("Select Expr1000, f1 from T where a=\"say \"\"hi\"\"\" and b='it''s' and c=1.5 "
                           "and d=42 and [e]=.5 and [T].[F]=#1/2/2000#");
    ASSERT_EQ(s.literals.size(), 6u);
    EXPECT_EQ(s.literals[0], Variant("say \"hi\""));
    EXPECT_EQ(s.literals[1], Variant("it's"));
    EXPECT_EQ(s.literals[2], Variant(1.5));
    EXPECT_EQ(s.literals[3], Variant(std::int64_t{42}));
    EXPECT_EQ(s.literals[4], Variant(0.5));
    EXPECT_EQ(s.literals[5], Variant("1/2/2000"));
}

// The key keeps the text as written, but for the literals: a digit inside
// a word (Latin or Cyrillic) is part of the name, a digit after a blank, an
// operator or a qualifier's dot starts a number.
TEST(Parameterize, DigitsInsideWordsStayInTheKey) {
    Shape s = Parameterize("Select Имя2, a$1, [T 3].x4 From T1 Where x=5 And y>.5 And t.6 And [z]7");
    EXPECT_EQ(s.key, "Select Имя2, a$1, [T 3].x4 From T1 Where x=\x02 And y>\x02 And t.\x02 And [z]\x02");
    ASSERT_EQ(s.literals.size(), 4u);
    EXPECT_EQ(s.literals[0], Variant(std::int64_t{5}));
    EXPECT_EQ(s.literals[1], Variant(0.5));
    EXPECT_EQ(s.literals[2], Variant(std::int64_t{6}));
    EXPECT_EQ(s.literals[3], Variant(std::int64_t{7}));
}

TEST(Parameterize, UnterminatedLiteralOrBracketIs3075) {
    for (const char* text : {"x=\"abc", "x='abc", "[Personal ID=1", "x=#1/2"})
        EXPECT_EQ(ErrorOf([&] { Parameterize(text); }), 3075) << text;
}

// ---------------------------------------------------------------- errors

struct ErrorCase {
    const char* name;
    const char* sql;
    int number;
    const char* text = nullptr;  // the whole description, when it matters
};

TEST(TranslateStatement, RaisesJetErrorNumbers) {
    const ErrorCase cases[] = {
        {"misspelt column", "Select FulName from PersonalData", 3061, "Too few parameters. Expected 1."},
        {"distinct unknown names are counted once each", "Select a, b, A from PersonalData where b=1", 3061,
         "Too few parameters. Expected 2."},
        {"unknown qualifier", "Select Persons.FullName from PersonalData", 3061},
        {"unknown table", "Select * from Persons", 3078},
        {"unknown table in a join", "Select * from PersonalData INNER JOIN Nowhere ON 1=1", 3078},
        {"bare name in two tables", "Select [Personal ID] from PersonalData, Photo", 3079},
        {"two operands in a row", "Select * from PersonalData where [FullName] = \"a\" [FirstName]", 3075,
         "Syntax error (missing operator) in query expression '[FullName] = \"a\" [FirstName]'."},
        {"unclosed parenthesis", "Select * from PersonalData where ([FullName] = 1", 3075},
        {"a stray character", "Select * from PersonalData where [FullName] = \"x\" @ 2", 3075,
         "Syntax error (missing operator) in query expression '[FullName] = \"x\" @ 2'."},
        {"empty select list", "Select from PersonalData", 3141},
        {"text after the end", "Select * from PersonalData; Select 1", 3142},
        {"no statement at all", "PersonalData", 3129},
        {"empty text", "", 3129},
        {"unclosed FROM parenthesis", "Select * from (PersonalData", 3131},
        {"join without its kind", "Select * from PersonalData JOIN Photo ON 1=1", 3131},
        {"join without ON", "Select * from PersonalData INNER JOIN Photo", 3131},
        {"insert without values", "Insert Into PhoneTypes (typeName)", 3134},
        {"update without set", "Update PhoneTypes typeName = 1", 3144},
        {"create without columns", "Create Table T", 3290},
        {"alter without action", "Alter Table PhoneTypes Rename x", 3293},
        {"drop of something else", "Drop Index x", 3295},
        {"order by nothing", "Select * from PersonalData order by", 3138},
        {"unknown function", "Select Soundex(FullName) from PersonalData", 3085},
        {"wrong argument count", "Select Mid(FullName) from PersonalData", 3075},
        {"create an existing table", "Create Table Photo (a Long)", 3010},
        {"drop a missing table", "Drop Table Nowhere", 3376},
        {"add an existing column", "Alter Table Photo Add Column [Photo ID] Counter", 3380},
        {"drop a missing column", "Alter Table Photo Drop Column Nowhere", 3265},
        {"unknown type name", "Create Table T (a Widget)", 3259},
        {"text size out of range", "Create Table T (a Text(300))", 3290},
        {"two counters", "Create Table T (a Counter, b Counter)", 3090},
        {"insert into an unknown field", "Insert Into PhoneTypes (nosuch) Values (1)", 3127},
        {"values and fields differ in number", "Insert Into PhoneTypes (typeName) Values (1, 2)", 3346},
        {"writing through a saved query", "Delete * From PersPrj Where [Owner ID]=1", 3073},
        {"update over a join", "Update Projects INNER JOIN PersonalData ON 1=1 Set Project = \"x\"", 3073},
        {"delete over a join", "Delete Projects.* From Projects INNER JOIN PersonalData ON 1=1", 3086},
    };
    TestBook book;
    for (const ErrorCase& c : cases) {
        std::string text;
        int n = ErrorOf([&] { TranslateStatement(Parameterize(c.sql), book.catalog()); }, &text);
        EXPECT_EQ(n, c.number) << c.name << ": " << text;
        if (c.text) {
            EXPECT_EQ(text, c.text) << c.name;
        }
    }
}

TEST(TranslateStatement, RefusesHostileNestingWithoutCrashing) {
    TestBook book;
    std::string deep = "Select * from PersonalData where " + std::string(100000, '(') + "1" + std::string(100000, ')');
    EXPECT_NE(ErrorOf([&] { TranslateStatement(Parameterize(deep), book.catalog()); }), 0);
    std::string nots = "Select * from PersonalData where ";
    for (int i = 0; i < 50000; ++i) nots += "not ";
    nots += "1";
    EXPECT_NE(ErrorOf([&] { TranslateStatement(Parameterize(nots), book.catalog()); }), 0);
    // Long flat chains build tall trees too.
    std::string ands = "Select * from PersonalData where [Personal ID]=1";
    for (int i = 0; i < 200000; ++i) ands += " and [Personal ID]=1";
    EXPECT_EQ(ErrorOf([&] { TranslateStatement(Parameterize(ands), book.catalog()); }), 3360);
    std::string joins = "Select * from Photo";
    for (int i = 0; i < 1000; ++i) joins += " INNER JOIN Photo AS p" + std::to_string(i) + " ON 1=1";
    EXPECT_EQ(ErrorOf([&] { TranslateStatement(Parameterize(joins), book.catalog()); }), 3360);
    // A long but sane criteria still translates.
    std::string ok = "Select * from PersonalData where [Personal ID]=1";
    for (int i = 0; i < 300; ++i) ok += " or [Personal ID]=" + std::to_string(i);
    EXPECT_EQ(ErrorOf([&] { TranslateStatement(Parameterize(ok), book.catalog()); }), 0);
}

// ---------------------------------------------------------------- result description

TEST(TranslateStatement, HiddenRowidsLetTheEngineWriteThroughJoins) {
    TestBook book;
    struct Case {
        const char* name;
        const char* sql;
        std::vector<bool> hasRowid;
    };
    const Case cases[] = {
        {"one table", "Select * from PersonalData", {true}},
        {"an inner join: both tables",
         "Select * from ResourcesOwners INNER JOIN Resources ON ResourcesOwners.[Resource ID] = Resources.[Resource ID]",
         {true, true}},
        {"a saved query has none",
         "SELECT PersonalData.FullName FROM PersonalData LEFT JOIN PersPrj ON PersonalData.[Personal ID] = "
         "PersPrj.[Owner ID]",
         {true, false}},
        {"distinct: read-only, none", "Select Distinct FullName from PersonalData", {false}},
        {"distinctrow over one table is every row", "Select Distinctrow * from PersonalData", {true}},
        {"distinctrow keeps the rowids of the tables that give output",
         "Select Distinctrow Resources.* From Employees, Resources INNER JOIN ResourcesOwners ON "
         "Resources.[Resource ID] = ResourcesOwners.[Resource ID]",
         {false, true, false}},
        {"distinctrow with output from every table is every row",
         "Select Distinctrow Photo.Photo, PersonalData.FullName From Photo INNER JOIN PersonalData ON "
         "Photo.[Personal ID] = PersonalData.[Personal ID]",
         {true, true}},
        {"aggregate: none", "Select Count(*) from PersonalData", {false}},
        {"an outer join nested on the right: its tables have none",
         "Select Photo.Photo from Photo LEFT JOIN (PersonalData LEFT JOIN Employees ON PersonalData.[Personal ID] = "
         "Employees.[Personal ID]) ON Photo.[Personal ID] = PersonalData.[Personal ID]",
         {true, false, false}},
    };
    for (const Case& c : cases) {
        Shape shape = Parameterize(c.sql);
        Translation t = TranslateStatement(shape, book.catalog());
        std::vector<bool> got;
        int count = 0;
        for (const Source& s : t.sources) {
            got.push_back(s.hasRowid);
            count += s.hasRowid;
        }
        EXPECT_EQ(got, c.hasRowid) << c.name;
        EXPECT_EQ(t.hiddenRowids, count) << c.name;
        // The text runs, and the hidden columns come after the visible ones.
        sqlite3_stmt* st = nullptr;
        ASSERT_EQ(sqlite3_prepare_v2(book.db(), t.sql.c_str(), -1, &st, nullptr), SQLITE_OK)
            << c.name << ": " << sqlite3_errmsg(book.db()) << "\n" << t.sql;
        EXPECT_EQ(sqlite3_column_count(st), static_cast<int>(t.columns.size()) + t.hiddenRowids) << c.name;
        sqlite3_finalize(st);
    }
}

TEST(TranslateStatement, NamesOutputColumnsAsDaoDoes) {
    TestBook book;
    struct Case {
        const char* sql;
        std::vector<std::string> names;
    };
    const Case cases[] = {
        {"Select FullName as [Name], 1+1, Len(FullName), [Personal ID] from PersonalData",
         {"Name", "Expr1000", "Expr1001", "Personal ID"}},
        {"Select p.FullName, Photo.* from PersonalData AS p, Photo", {"FullName", "Personal ID", "Photo", "Photo ID"}},
        {"Select p.[Personal ID], Photo.[Personal ID] from PersonalData p, Photo",
         {"p.Personal ID", "Photo.Personal ID"}},
        {"Select fullname, SURNAME from personaldata", {"FullName", "SurName"}},
    };
    for (const Case& c : cases) {
        Translation t = TranslateStatement(Parameterize(c.sql), book.catalog());
        std::vector<std::string> names;
        for (const OutputColumn& col : t.columns) names.push_back(col.name);
        EXPECT_EQ(names, c.names) << c.sql;
    }
}

TEST(TranslateStatement, CachesEveryShapeButThoseWithWrittenLiterals) {
    TestBook book;
    EXPECT_TRUE(TranslateStatement(Parameterize("Select * from Photo where [Photo ID]=3"), book.catalog()).cacheable);
    EXPECT_FALSE(TranslateStatement(Parameterize("Select Top 2 * from Photo"), book.catalog()).cacheable);
    EXPECT_FALSE(TranslateStatement(Parameterize("Create Table T (a Text(50))"), book.catalog()).cacheable);
    // A number is a parameter too: one statement serves every identity.
    Translation t = TranslateStatement(Parameterize("Select * from Photo where [Photo ID]=3"), book.catalog());
    EXPECT_NE(t.sql.find("?1"), std::string::npos);
    EXPECT_EQ(t.sql.find('3'), std::string::npos);
}

// ---------------------------------------------------------------- dialect on SQLite

struct ValueCase {
    const char* name;
    const char* expr;
    const char* value;
};

// Each expression is selected over the one photo row with [Photo ID]=1.
TEST(Dialect, ExpressionsGiveJetValues) {
    const ValueCase cases[] = {
        {"True is -1", "True", "-1"},
        {"False is 0", "False", "0"},
        {"a comparison gives -1", "1=1", "-1"},
        {"& joins text", "\"a\" & \"b\"", "ab"},
        {"& counts one Null as empty", "Null & \"b\"", "b"},
        {"& keeps Null & Null", "Null & Null", "<null>"},
        {"& writes numbers as text", "\"n\" & 5 & 2.5", "n52.5"},
        {"+ joins two texts", "\"a\" + \"b\"", "ab"},
        {"+ adds numbers", "1 + 2", "3"},
        {"+ reads a text beside a number as a number", "\"1\" + 2", "3"},
        {"+ keeps fractions", "1.5 + 1", "2.5"},
        {"+ with Null is Null", "Null + 1", "<null>"},
        {"/ divides without truncating", "5 / 2", "2.5"},
        {"\\ divides whole numbers", "7 \\ 2", "3"},
        {"Mod", "7 Mod 3", "1"},
        {"unary minus binds looser than ^", "-2^2", "-4.0"},
        {"Instr is textual by default", "Instr(\"abcABC\", \"C\")", "3"},
        {"Instr from a start", "Instr(4, \"abcABC\", \"c\")", "6"},
        {"Instr binary compare", "Instr(1, \"abcABC\", \"C\", 0)", "6"},
        {"Instr textual compare", "Instr(1, \"abcABC\", \"C\", 1)", "3"},
        {"Instr of an empty text is the start", "Instr(2, \"abc\", \"\")", "2"},
        {"Instr past the end is 0", "Instr(5, \"abc\", \"a\")", "0"},
        {"Instr past the end is 0 for an empty text too", "Instr(5, \"abc\", \"\")", "0"},
        {"Instr in an empty text is 0", "Instr(\"\", \"a\")", "0"},
        {"Instr of Null is Null", "Instr(Null, \"a\")", "<null>"},
        {"Instr counts characters", "Instr(\"Привет\", \"В\")", "4"},
        {"Mid$ cuts characters", "Mid$(\"Привет\", 2, 3)", "рив"},
        {"Mid to the end", "Mid(\"hello\", 3)", "llo"},
        {"Mid past the end is empty", "Mid(\"hello\", 9)", ""},
        {"Mid of Null is Null", "Mid(Null, 1)", "<null>"},
        {"Mid$ of Null is empty", "Mid$(Null, 1)", ""},
        {"Left$", "Left$(\"hello\", 2)", "he"},
        {"Right", "Right(\"hello\", 3)", "llo"},
        {"Len counts characters", "Len(\"Привет\")", "6"},
        {"UCase across Unicode", "UCase(\"иван\")", "ИВАН"},
        {"LCase$", "LCase$(\"ABC\")", "abc"},
        {"Trim drops blanks", "\"[\" & Trim(\"  a b  \") & \"]\"", "[a b]"},
        {"IIf true", "IIf(1=1, \"y\", \"n\")", "y"},
        {"IIf on Null takes the false branch", "IIf(Null, \"y\", \"n\")", "n"},
        {"Asc of a letter", "Asc(\"A\")", "65"},
        {"Asc of a number reads its text", "asc(124)", "49"},
        {"Chr", "Chr(65)", "A"},
        {"Nz", "Nz(Null, 7)", "7"},
        {"Like with * ? #", "\"Room 101\" Like \"r??m #*\"", "-1"},
        {"Like treats % and _ as characters", "\"axb\" Like \"a%b\"", "0"},
        {"Not Like", "\"abc\" Not Like \"a*\"", "0"},
        {"Is Null", "Null Is Null", "-1"},
        {"Is Not Null", "1 Is Not Null", "-1"},
        {"In a list, without case", "\"B\" In (\"a\", \"b\")", "-1"},
        {"Between either way round", "5 Between 10 And 1", "-1"},
        {"Not Between", "5 Not Between 1 And 3", "-1"},
        {"text = ignores case across Unicode", "\"ИВАНОВ\" = \"иванов\"", "-1"},
        {"accents still count", "\"e\" = \"é\"", "0"},
        {"text < ignores case", "\"a\" < \"B\"", "-1"},
        {"Exists", "Exists (Select * from PersonalData where [Personal ID]=4)", "-1"},
        {"a subquery value", "(Select FullName from PersonalData where [Personal ID]=2)", "John Smith"},
    };
    TestBook book;
    for (const ValueCase& c : cases) {
        std::string sql = std::string("Select ") + c.expr + " from Photo where [Photo ID]=1";
        Result r;
        std::string error;
        try {
            r = book.Run(sql);
        } catch (const std::exception& e) {
            error = e.what();
        }
        ASSERT_EQ(r.rows.size(), 1u) << c.name << ": " << error;
        EXPECT_EQ(r.rows[0], c.value) << c.name;
    }
}

// Join shapes SQLite cannot take as written are rearranged; the rows must
// stay Jet's.
TEST(Dialect, RearrangedJoinsKeepJetsRows) {
    TestBook book;
    // A comma binds looser than a join: Photo × (PersonalData ⟖ Employees),
    // so the vacancy pairs with every photo.
    EXPECT_EQ(book.Run("Select Photo.[Photo ID], PersonalData.FullName, Employees.[Employee ID] from Photo, "
                       "PersonalData RIGHT JOIN Employees ON PersonalData.[Personal ID] = Employees.[Personal ID]")
                  .rows.size(),
              9u);
    // An outer join nested on the right of an inner join.
    Result nested = book.Run(
        "Select Photo.[Photo ID], Employees.[Employee ID] from Photo INNER JOIN (PersonalData LEFT JOIN Employees ON "
        "PersonalData.[Personal ID]=Employees.[Personal ID]) ON Photo.[Personal ID]=PersonalData.[Personal ID] "
        "order by Photo.[Photo ID]");
    EXPECT_EQ(nested.rows, (std::vector<std::string>{"1|1", "2|1", "3|2"}));
    // Inner joins nested on the right are flattened; the conditions all hold.
    Result flat = book.Run(
        "Select Photo.[Photo ID] from Employees INNER JOIN (Photo INNER JOIN PersonalData ON Photo.[Personal ID] = "
        "PersonalData.[Personal ID]) ON Employees.[Personal ID] = Photo.[Personal ID] where Employees.[Job ID]=2");
    EXPECT_EQ(flat.rows, (std::vector<std::string>{"3"}));
}

TEST(Dialect, TextOrdersGroupsAndDistinctIgnoreCase) {
    TestBook book;
    book.Exec("INSERT INTO \"PhoneTypes\" (\"typeName\") VALUES ('b'), ('A'), ('C'), ('а'), ('Б'), ('x'), ('X')");
    EXPECT_EQ(book.Run("Select typeName from PhoneTypes order by typeName").rows,
              (std::vector<std::string>{"A", "b", "C", "x", "X", "а", "Б"}));
    EXPECT_EQ(book.Run("Select typeName & \"\" from PhoneTypes order by typeName & \"\" desc").rows.front(), "Б");
    EXPECT_EQ(book.Run("Select Distinct typeName from PhoneTypes where typeName In (\"x\")").rows.size(), 1u);
    EXPECT_EQ(book.Run("Select Distinct typeName & \"\" from PhoneTypes where typeName = \"X\"").rows.size(), 1u);
    EXPECT_EQ(book.Run("Select Count(*) from PhoneTypes group by typeName having Count(*) > 1").rows,
              (std::vector<std::string>{"2"}));
    // A saved query's columns keep the collation of the table's.
    EXPECT_EQ(book.Run("Select * from OrgPrj where Project = \"c:\\prj\\a\"").rows.size(), 1u);
}

TEST(Dialect, WritesRunOnSQLite) {
    TestBook book;
    book.Run("Insert Into PhoneTypes (typeName) Values (\"mobile\");");
    book.Run("INSERT INTO [PhoneTypes] Values (\"fax\", 77)");
    book.Run("Insert Into PhoneTypes (typeName) Select FullName from PersonalData where [Personal ID]=2");
    book.Run("Update PhoneTypes Set typeName = \"MOBILE \" & [type ID] Where typeName=\"Mobile\"");
    book.Run("Delete * From PhoneTypes Where typeName = \"john smith\"");
    EXPECT_EQ(book.Run("Select * from PhoneTypes order by [type ID]").rows,
              (std::vector<std::string>{"MOBILE 1|1", "fax|77"}));
    book.Run("Delete From PhoneTypes");
    EXPECT_TRUE(book.Run("Select * from PhoneTypes").rows.empty());
}

// ---------------------------------------------------------------- DDL

class FixedCatalog : public Catalog {
public:
    std::map<std::string, CatalogObject> objects;
    std::optional<CatalogObject> Find(std::string_view name) const override {
        for (const auto& [k, v] : objects)
            if (k.size() == name.size() && strncasecmp(k.data(), name.data(), k.size()) == 0) return v;
        return std::nullopt;
    }
};

TEST(Ddl, CounterColumnsAddedToOldTables) {
    // The schema correction adds each Counter to a table that lacks it.
    FixedCatalog catalog;
    const std::pair<const char*, const char*> texts[] = {
        {"Resources", "Alter Table [Resources] Add Column [Resource ID] Counter"},
        {"PostAddresses", "Alter Table PostAddresses Add Column [Address ID] Counter"},
        {"Rooms", "Alter Table Rooms Add Column [Room ID] Counter"},
        {"PhoneTypes", "Alter Table PhoneTypes Add Column [type ID] Counter"},
        {"JobTitles", "Alter Table JobTitles Add Column [Job ID] Counter"},
        {"Employees", "Alter Table Employees Add Column [Employee ID] Counter"},
        {"PersonalData", "Alter Table PersonalData Add Column [Personal ID] Counter"},
        {"Photo", "Alter Table Photo Add Column [Photo ID] Counter"},
        {"Organizations", "Alter Table [Organizations] Add Column [Organization ID] Counter"},
    };
    for (const auto& [table, text] : texts) catalog.objects[table] = CatalogObject{table, false, {"x"}};
    for (const auto& [table, text] : texts) {
        Translation t = TranslateStatement(Parameterize(text), catalog);
        EXPECT_EQ(t.kind, StatementKind::AlterTable) << text;
        EXPECT_EQ(t.alter, Translation::AlterAction::AddColumn) << text;
        EXPECT_EQ(t.table, table) << text;
        ASSERT_EQ(t.columnDefs.size(), 1u) << text;
        EXPECT_EQ(t.columnDefs[0].type, 4) << text;
        EXPECT_TRUE(t.columnDefs[0].counter) << text;
        EXPECT_TRUE(t.sql.empty()) << text;
    }
}

TEST(Ddl, JetTypeNamesBecomeDaoTypes) {
    FixedCatalog catalog;
    Translation t = TranslateStatement(
        Parameterize("CREATE TABLE [New Table] ([a b] Text(50) NOT NULL, c TEXT, d Long, e AutoIncrement(1, 1), f YesNo, "
                     "g LongBinary, h Memo, i Integer, j Short, k Byte, l Double, m DateTime, n Currency, "
                     "o Bit, p Single, q Long PRIMARY KEY);"),
        catalog);
    ASSERT_EQ(t.kind, StatementKind::CreateTable);
    EXPECT_EQ(t.table, "New Table");
    struct Want {
        const char* name;
        int type, size;
        bool counter, notNull;
    };
    const Want want[] = {{"a b", 10, 50, false, true}, {"c", 10, 255, false, false}, {"d", 4, 0, false, false},
                         {"e", 4, 0, true, false},    {"f", 1, 0, false, false},    {"g", 11, 0, false, false},
                         {"h", 12, 0, false, false},  {"i", 4, 0, false, false},    {"j", 3, 0, false, false},
                         {"k", 2, 0, false, false},   {"l", 7, 0, false, false},    {"m", 8, 0, false, false},
                         {"n", 5, 0, false, false},   {"o", 1, 0, false, false},    {"p", 6, 0, false, false},
                         {"q", 4, 0, false, true}};
    ASSERT_EQ(t.columnDefs.size(), std::size(want));
    for (std::size_t k = 0; k < std::size(want); ++k) {
        EXPECT_EQ(t.columnDefs[k].name, want[k].name);
        EXPECT_EQ(t.columnDefs[k].type, want[k].type) << want[k].name;
        EXPECT_EQ(t.columnDefs[k].size, want[k].size) << want[k].name;
        EXPECT_EQ(t.columnDefs[k].counter, want[k].counter) << want[k].name;
        EXPECT_EQ(t.columnDefs[k].notNull, want[k].notNull) << want[k].name;
    }
    EXPECT_TRUE(t.columnDefs.back().primaryKey);

    catalog.objects["T"] = CatalogObject{"T", false, {"Old"}};
    Translation drop = TranslateStatement(Parameterize("Alter Table t Drop Column old"), catalog);
    EXPECT_EQ(drop.alter, Translation::AlterAction::DropColumn);
    EXPECT_EQ(drop.dropColumn, "Old");
    Translation alter = TranslateStatement(Parameterize("Alter Table T Alter Column old Text(20)"), catalog);
    EXPECT_EQ(alter.alter, Translation::AlterAction::AlterColumn);
    EXPECT_EQ(alter.columnDefs[0].size, 20);
    EXPECT_EQ(TranslateStatement(Parameterize("drop table t;"), catalog).kind, StatementKind::DropTable);
}

// ---------------------------------------------------------------- criteria

TEST(Criteria, FieldsAreFoundByFullOrBareName) {
    const std::vector<std::string> fields = {"Personal ID", "PersonalData.Comments", "Employees.Comments", "FullName"};
    struct Case {
        const char* criteria;
        const char* field;  // the "f<i>" it must name, or nullptr for an error
        int error = 0;
    };
    const Case cases[] = {
        {"[Personal ID]=1", "\"f0\""},
        {"[personal id]=1", "\"f0\""},
        {"[PersonalData].[Personal ID]=1", "\"f0\""},  // qualified, the field is bare
        {"[PersonalData.Comments]=\"x\"", "\"f1\""},
        {"Employees.Comments=\"x\"", "\"f2\""},
        {"FullName Like \"a*\"", "\"f3\""},
        {"Comments=\"x\"", nullptr, 3070},  // two fields end in Comments
        {"[Nickname]=\"x\"", nullptr, 3070},
        {"[Personal ID]=", nullptr, 3075},
        {"[Personal ID]=1 2", nullptr, 3075},
    };
    for (const Case& c : cases) {
        std::string text;
        CriteriaTranslation t;
        int n = ErrorOf([&] { t = TranslateCriteria(Parameterize(c.criteria), fields); }, &text);
        EXPECT_EQ(n, c.error) << c.criteria << ": " << text;
        if (c.field) {
            EXPECT_NE(t.sql.find(c.field), std::string::npos) << c.criteria << " -> " << t.sql;
        }
    }
}

// The engine may test a row by binding its values as the columns f0, f1, …
// of a subquery; such columns have no collation, so the criteria's text
// compares must bring their own.
TEST(Criteria, IgnoreCaseOverBoundValuesToo) {
    TestBook book;
    struct Case {
        const char* criteria;
        Variant a, b;
        bool match;
    };
    const Case cases[] = {
        {"[A]=\"abc\"", Variant("ABC"), Variant(Null{}), true},
        {"[A]=[B]", Variant("x"), Variant("X"), true},
        {"[A]<>[B]", Variant("ё"), Variant("Ё"), false},
        {"[A] In (\"x\", \"y\")", Variant("Y"), Variant(Null{}), true},
        {"[A] Between \"a\" And \"c\"", Variant("B"), Variant(Null{}), true},
        {"[A]=5 And [B]=True", Variant(std::int64_t{5}), Variant(std::int64_t{-1}), true},
        {"[A]=\"abd\"", Variant("ABC"), Variant(Null{}), false},
        {"[A] Like \"a*\" And [B] Is Null", Variant("ABC"), Variant(Null{}), true},
    };
    for (const Case& c : cases) {
        Shape shape = Parameterize(c.criteria);
        CriteriaTranslation t = TranslateCriteria(shape, {"A", "B"});
        // The criteria's parameters come after the two values.
        std::string where = t.sql, renumbered;
        for (std::size_t i = 0; i < where.size(); ++i) {
            if (where[i] == '?') {
                std::size_t j = i + 1;
                while (j < where.size() && std::isdigit(static_cast<unsigned char>(where[j]))) ++j;
                renumbered += "?" + std::to_string(std::stoi(where.substr(i + 1, j - i - 1)) + 2);
                i = j - 1;
            } else {
                renumbered += where[i];
            }
        }
        std::string sql = "SELECT 1 FROM (SELECT ?1 AS \"f0\", ?2 AS \"f1\") WHERE " + renumbered;
        sqlite3_stmt* st = nullptr;
        ASSERT_EQ(sqlite3_prepare_v2(book.db(), sql.c_str(), -1, &st, nullptr), SQLITE_OK) << sql;
        Shape values;
        values.literals = {c.a, c.b};
        BindLiterals(st, values);
        BindLiterals(st, shape, 2);
        EXPECT_EQ(sqlite3_step(st) == SQLITE_ROW, c.match) << c.criteria;
        sqlite3_finalize(st);
    }
}

TEST(Criteria, EqualitiesOfTheTopConjunctionAreOfferedForIndexing) {
    const std::vector<std::string> fields = {"A", "B", "C"};
    struct Case {
        const char* criteria;
        std::vector<int> fields;
    };
    const Case cases[] = {
        {"[A]=1", {0}},
        {"[A]=1 And [B]=\"x\"", {0, 1}},
        {"([B]=\"x\") and (([A]=2))", {1, 0}},
        {"\"x\"=[C]", {2}},
        {"[A]=1 Or [B]=2", {}},
        {"([A]=1) and ([B]=2 or [C]=3)", {0}},
        {"[A]=[B]", {}},
        {"[A]>1", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TranslateCriteria(Parameterize(c.criteria), fields).equalityFields, c.fields) << c.criteria;
}

}  // namespace
}  // namespace zelvo::dao::jet::testing
