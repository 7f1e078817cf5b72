#include "personslist/persons_query.h"

#include <sys/stat.h>

#include <array>
#include <fstream>
#include <map>
#include <mutex>
#include <utility>

#include "platform/core/value_conv.h"
#include "store/library_state.h"

namespace zelvo {

std::string QuoteSqlText(const std::string& text) {
    std::string quoted = "\"";
    for (char c : text) {
        quoted += c;
        if (c == '"') quoted += '"';
    }
    return quoted + "\"";
}

std::string TableColumnList(const std::string& Table, const dao::Database& db) {
    std::string list;
    dao::Fields fields = db.TableDefs().Item(Table).Fields();
    int count = fields.Count();
    for (int i = 0; i < count; ++i) {
        if (i) list += ", ";
        list += "[" + Table + "].[" + fields.Item(i).Name() + "]";
    }
    return list + " ";
}

namespace {

// What the book's files look like now: the file and its write-ahead log,
// each by identity, size and time of change, and the log's header. Every
// commit, by this process or another, grows the log or starts it anew with
// new salts in its header, so an equal stamp means an unchanged book.
struct BookStamp {
    struct File {
        bool exists = false;
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        long long changedNs = 0;
        bool operator==(const File&) const = default;
    };
    File book, log;
    std::array<char, 32> logHeader{};
    bool operator==(const BookStamp&) const = default;
};

BookStamp::File StampOf(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) return {};
    return {true, st.st_dev, st.st_ino, st.st_size, st.st_mtim.tv_sec * 1000000000LL + st.st_mtim.tv_nsec};
}

BookStamp StampOfBook(const std::string& path) {
    BookStamp stamp{StampOf(path), StampOf(path + "-wal")};
    if (stamp.log.exists) std::ifstream(path + "-wal", std::ios::binary).read(stamp.logHeader.data(), 32);
    return stamp;
}

}  // namespace

std::string TableColumnList(const std::string& Table, const std::string& DatabaseName) {
    // Reading the list opens the whole book, and the card and the summary
    // ask for lists a dozen times while they load: a list read is kept
    // while the book's files are unchanged.
    struct Kept {
        BookStamp stamp;
        std::string list;
    };
    static std::mutex guard;
    static std::map<std::pair<std::string, std::string>, Kept> kept;
    const BookStamp stamp = StampOfBook(DatabaseName);
    const auto key = std::make_pair(DatabaseName, Table);
    if (stamp.book.exists) {
        std::lock_guard lock(guard);
        if (auto it = kept.find(key); it != kept.end() && it->second.stamp == stamp) return it->second.list;
    }

    dao::Database db = DBEngine().OpenDatabase(DatabaseName, false, false, "Access");
    std::string list;
    {
        // The database closes however the reading ends.
        struct Closer {
            dao::Database& db;
            ~Closer() { db.Close(); }
        } closer{db};
        list = TableColumnList(Table, db);
    }
    // Opening may have changed the files (a log made, a checkpoint at
    // close): the stamp kept is the one after.
    if (stamp.book.exists) {
        std::lock_guard lock(guard);
        kept[key] = {StampOfBook(DatabaseName), list};
    }
    return list;
}

std::string GetAllPersonsQuery(bool InsArcPrj) {
    return "Select distinct " + TableColumnList("PersonalData", DatabasePath()) + "," +
           " Projects.[Owner ID], Projects.[OwnerType], Projects.InsArcPrj " + " From [PersonalData],Projects " +
           " Where [Projects].InsArcPrj=" + ValueConv::BoolToSql(InsArcPrj) + " and [Projects].[OwnerType]=" +
           std::to_string(oPersonal_ID) + " and Projects.[Owner ID]=PersonalData.[Personal ID] " + ";";
}

std::string GetNoPrjPersonsQuery() {
    return "SELECT PersonalData.[Personal ID] ,PersonalData.[FirstName] ,PersonalData.MiddleName "
           ",PersonalData.Surname,PersonalData.FullName FROM PersonalData LEFT JOIN PersPrj ON "
           "PersonalData.[Personal ID] = PersPrj.[Owner ID] WHERE (((PersPrj.[Owner ID]) Is Null) );";
}

std::string ProjectCondition(const std::string& rProject, AddrFiltr Filter) {
    if (Filter == InsCurPrj) {
        // Both paths end in a backslash, so "A" does not take in "AB".
        return "Instr(1,[Projects].[Project] & \"\\\"," + QuoteSqlText(rProject + "\\") + ",1)=1";
    }
    return "(Projects.Project)=" + QuoteSqlText(rProject);
}

std::string GetPrjPersonsQuery(const std::string& rProject, bool InsArcPrj, AddrFiltr Filter) {
    std::string criterion = ProjectCondition(rProject, Filter);
    return "SELECT PersonalData.[Personal ID] as [Personal ID],PersonalData.[FirstName],PersonalData.MiddleName,"
           "PersonalData.Surname,PersonalData.FullName,Projects.Project,Projects.InsArcPrj,Projects.[Owner ID] "
           ",Projects.[OwnerType]  From Projects,PersonalData " +
           std::string("WHERE (( ") + criterion + ") AND ((Projects.InsArcPrj)=" + ValueConv::BoolToSql(InsArcPrj) +
           ") AND ((Projects.[Owner ID])=[PersonalData].[Personal ID]) and (Projects.[OwnerType]= " +
           std::to_string(oPersonal_ID) + ") );";
}

std::string GetOwnerResourcesQuery(std::int32_t Owner_ID, std::int32_t OwnerType, std::int32_t ResType) {
    return GetOwnerResourcesQuery(TableColumnList("Resources", DatabasePath()), Owner_ID, OwnerType, ResType);
}

std::string GetOwnerResourcesQuery(const std::string& ResourceColumns, std::int32_t Owner_ID, std::int32_t OwnerType,
                                   std::int32_t ResType) {
    return "Select " + ResourceColumns + ", ResourcesOwners.[Owner ID], ResourcesOwners.[OwnerType] " +
           "From ResourcesOwners INNER JOIN [Resources] ON ResourcesOwners.[Resource ID] = [Resources].[Resource ID] " +
           " Where [Owner ID]=" + std::to_string(Owner_ID) + " and [OwnerType]=" + std::to_string(OwnerType) +
           " and [ResourceType]=" + std::to_string(ResType) + ";";
}

}  // namespace zelvo
