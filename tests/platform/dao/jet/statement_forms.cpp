#include "statement_forms.h"

#include <algorithm>
#include <cctype>

namespace zelvo::dao::jet::testing {

std::string GetPrjPersonsQuery(const std::string& criterion, bool archive) {
    return "SELECT PersonalData.[Personal ID] as [Personal ID],PersonalData.[FirstName],PersonalData.MiddleName,"
           "PersonalData.Surname,PersonalData.FullName,Projects.Project,Projects.InsArcPrj,Projects.[Owner ID] ,"
           "Projects.[OwnerType]  From Projects,PersonalData WHERE (( " + criterion +
           ") AND ((Projects.InsArcPrj)=" + (archive ? "True" : "False") +
           ") AND ((Projects.[Owner ID])=[PersonalData].[Personal ID]) and (Projects.[OwnerType]= 0) );";
}

namespace {

std::string GetAllPersonsQuery(bool archive) {
    return "Select distinct " + kPersonal + "," + " Projects.[Owner ID], Projects.[OwnerType], Projects.InsArcPrj " +
           " From [PersonalData],Projects " + " Where [Projects].InsArcPrj=" + (archive ? "True" : "False") +
           " and [Projects].[OwnerType]=0 and Projects.[Owner ID]=PersonalData.[Personal ID] ;";
}

std::string PersonJobsQuery(int id) {
    std::string criterion = id >= 1 ? " WHERE (((PersonalData.[Personal ID])=" + std::to_string(id) + ")"
                                    : " WHERE ( (PersonalData.[Personal ID]=0) or (PersonalData.[Personal ID] Is Null) ";
    return "SELECT PersonalData.[Personal ID], PersonalData.FullName, Organizations.Organization, JobTitles.JobTitle, "
           "Organizations.[Organization ID], Organizations.[Parent ID], Employees.[Job ID], Employees.[Employee ID]  "
           " FROM ((Employees RIGHT JOIN PersonalData ON Employees.[Personal ID] = PersonalData.[Personal ID]) LEFT "
           "JOIN JobTitles ON Employees.[Job ID] = JobTitles.[Job ID]) LEFT JOIN Organizations ON JobTitles.[Organization "
           "ID] = Organizations.[Organization ID] " + criterion + " and (Employees.[Job ID]>0));";
}

std::string FindResOwnersByStr(std::string s, int kind) {
    // Double quotes are dropped, every "|" becomes " & asc(124) & ".
    s.erase(std::remove(s.begin(), s.end(), '"'), s.end());
    std::string escaped;
    for (char c : s) escaped += c == '|' ? std::string("\" & asc(124) & \"") : std::string(1, c);
    return "Select ResourcesOwners.[Owner ID], ResourcesOwners.[OwnerType] from Resources, ResourcesOwners "
           " Where Resources.ResourceString=" + Q + escaped + Q + " and Resources.ResourceType=" +
           std::to_string(kind) + " and Resources.[Resource ID]=ResourcesOwners.[Resource ID];";
}

std::string PhotoByMail(const std::string& mail, bool employee) {
    if (!employee)
        return "Select " + kResources + " , " + kPhoto + " , " + kPersonal +
               " FROM ((Resources INNER JOIN ResourcesOwners ON Resources.[Resource ID] = ResourcesOwners.[Resource ID]) "
               "INNER JOIN Photo ON ResourcesOwners.[Owner ID] = Photo.[Personal ID]) INNER JOIN PersonalData ON "
               "Photo.[Personal ID] = PersonalData.[Personal ID] WHERE (((Resources.ResourceString)=" + Q + mail + Q +
               ") AND ((Resources.ResourceType)=2) AND ((ResourcesOwners.OwnerType)=0)) order by Photo.[Photo ID] desc ;";
    return "Select " + kResources + " , " + kPhoto + " , " + kPersonal + " , " + kEmployees +
           " FROM ((Resources INNER JOIN ResourcesOwners ON Resources.[Resource ID] = ResourcesOwners.[Resource ID]) "
           "INNER JOIN Employees ON ResourcesOwners.[Owner ID] = Employees.[Employee ID]) INNER JOIN (Photo INNER JOIN "
           "PersonalData ON Photo.[Personal ID] = PersonalData.[Personal ID]) ON Employees.[Personal ID] = Photo.[Personal "
           "ID]  WHERE (((Resources.ResourceString)=" + Q + mail + Q +
           ") AND ((Resources.ResourceType)=2) AND ((ResourcesOwners.OwnerType)=4)) order by Photo.[Photo ID] desc;";
}


}  // namespace

std::vector<Form> Forms() {
    return {
        // Saved queries.
        {"saved query OrgPrj gives the organizations' project rows",
         "Select * from Projects Where Projects.OwnerType=1;", {"1|1|C:\\Prj\\A|0"}},
        {"saved query PersPrj gives the persons' project rows, archive included",
         "Select * from Projects Where Projects.OwnerType=0;",
         {"1|0|C:\\Prj\\A|0", "2|0|C:\\Prj\\A\\Sub|0", "3|0|C:\\Prj\\AB|0", "1|0|C:\\Arc\\Old|-1",
          "5|0|C:\\Arc\\Old|-1", "1|0|C:\\Prj\\B|0"}},

        // Lookups.
        {"owners of a resource string, found without regard to case",
         FindResOwnersByStr("JOHN@example.com", 2), {"2|<null>"}},
        {"a bar in the searched string becomes Asc(124), which is 49",
         FindResOwnersByStr("a|b@x.org", 2), {"3|0"}},
        {"double quotes are dropped from the searched string",
         FindResOwnersByStr("john@\"example.com", 2), {"2|<null>"}},
        {"top-level organizations: parent 0 or Null",
         "Select * from Organizations  Where Organizations.[Parent ID]=0 or (Organizations.[Parent ID] Is Null) ",
         {"Acme|<null>|<null>|1", "Globex|0|<null>|3"}},
        {"employees with their persons by a comma join",
         "Select * From PersonalData, Employees Where PersonalData.[Personal ID]=Employees.[Personal ID];",
         {kPerson1 + "|1|1|2|<null>|1", kPerson2 + "|2|2|0|<null>|2"}},

        // Person intake and deletion.
        {"a person's resource links count a Null owner type as person",
         "Select * from ResourcesOwners  where [Owner ID]=2 And ([OwnerType]=0  or [OwnerType] Is Null) ;",
         {"3|2|<null>"}},
        {"a record by its key", "Select * from [Resources]  Where [Resource ID]=3;", {"john@example.com|2|0|3"}},
        {"a record by key 0 also asks for a Null key",
         "Select * from [Resources]  Where [Resource ID]=0 or [Resource ID] Is Null ;", {}},
        {"a person's employee rows", "Select * from Employees where [Personal ID]=1 ;", {"1|1|2|<null>|1"}},

        // Projects.
        {"an owner's project rows",
         "Select * from Projects WHERE (((Projects.[Owner ID])=1) and Projects.[OwnerType]=0);",
         {"1|0|C:\\Prj\\A|0", "1|0|C:\\Arc\\Old|-1", "1|0|C:\\Prj\\B|0"}},
        {"an owner's project rows with their fields named",
         "SELECT Projects.[Owner ID], Projects.OwnerType, Projects.Project, Projects.InsArcPrj From Projects "
         "WHERE (((Projects.[Owner ID])=2) AND ((Projects.OwnerType)=0));",
         {"2|0|C:\\Prj\\A\\Sub|0"}},
        {"sibling project AB is not under A",
         "Select Projects.[Owner ID] ,Projects.[OwnerType] ,Projects.[Project] ,Projects.[InsArcPrj] From Projects "
         "Where ( (Instr(1,[Projects].[Project] & \"\\\",\"c:\\prj\\a\\\",1)=1) and (Projects.InsArcPrj=False)  ) ;",
         {"1|0|C:\\Prj\\A|0", "2|0|C:\\Prj\\A\\Sub|0", "1|1|C:\\Prj\\A|0", "1|2|C:\\Prj\\A|0", "1|4|C:\\Prj\\A|0"}},
        {"the exact project, compared without regard to case",
         "Select Projects.[Owner ID] ,Projects.[OwnerType] ,Projects.[Project] ,Projects.[InsArcPrj] From Projects "
         "Where ( ((Projects.Project)=\"C:\\PRJ\\A\") and (Projects.InsArcPrj=False)  ) ;",
         {"1|0|C:\\Prj\\A|0", "1|1|C:\\Prj\\A|0", "1|2|C:\\Prj\\A|0", "1|4|C:\\Prj\\A|0"}},
        {"archive rows by the word True",
         "Select Projects.[Owner ID] ,Projects.[OwnerType] ,Projects.[Project] ,Projects.[InsArcPrj] From Projects "
         "Where ( ((Projects.Project)=\"C:\\Arc\\Old\") and (Projects.InsArcPrj=True)  ) ;",
         {"1|0|C:\\Arc\\Old|-1", "5|0|C:\\Arc\\Old|-1"}},
        {"one object's row of a project",
         "Select Projects.Project,Projects.[Owner ID] ,Projects.[OwnerType] from Projects Where "
         "Projects.[Project]=\"C:\\Prj\\A\" and Projects.[Owner ID]=1 and Projects.[OwnerType]=0;",
         {"C:\\Prj\\A|1|0"}},

        // The persons list.
        {"all live persons, one row each however many projects",
         GetAllPersonsQuery(false), {kPerson1 + "|1|0|0", kPerson2 + "|2|0|0", "Doe|Jane|<null>|Jane Doe|<null>|3|3|0|0"}},
        {"all archived persons", GetAllPersonsQuery(true),
         {kPerson1 + "|1|0|-1", "O\"Hara|Scarlett|<null>|Scarlett O\"Hara|<null>|5|5|0|-1"}},
        {"unsorted persons through a left join on a saved query",
         "SELECT PersonalData.[Personal ID] ,PersonalData.[FirstName] ,PersonalData.MiddleName ,PersonalData.Surname,"
         "PersonalData.FullName FROM PersonalData LEFT JOIN PersPrj ON PersonalData.[Personal ID] = PersPrj.[Owner ID] "
         "WHERE (((PersPrj.[Owner ID]) Is Null) );",
         {"4|Brown|Bob||Bob Brown"}},
        {"persons of the current project",
         GetPrjPersonsQuery("(Projects.Project)=" + Q + "c:\\prj\\a" + Q, false),
         {"1|Иванов|Иван|Иванович|ИВАНОВ Иван|C:\\Prj\\A|0|1|0"}},
        {"persons of the project and its subprojects",
         GetPrjPersonsQuery("Instr(1,[Projects].[Project] & \"\\\",\"C:\\Prj\\A\\\",1)=1", false),
         {"1|Иванов|Иван|Иванович|ИВАНОВ Иван|C:\\Prj\\A|0|1|0", "2|Smith|John||John Smith|C:\\Prj\\A\\Sub|0|2|0"}},
        {"an owner's e-mail addresses through an inner join",
         "Select " + kResources + ", ResourcesOwners.[Owner ID], ResourcesOwners.[OwnerType] " +
             "From ResourcesOwners INNER JOIN [Resources] ON ResourcesOwners.[Resource ID] = [Resources].[Resource ID] " +
             " Where [Owner ID]=1 and [OwnerType]=0 and [ResourceType]=2;",
         {"ivanov@example.ru|2|0|1|1|0"}},

        // Resources of the card.
        {"home phones: the person's own and the address node's",
         " Select " + kResources + " , ResourcesOwners.[Owner ID],ResourcesOwners.[OwnerType] " +
             " FROM ResourcesOwners INNER JOIN Resources ON ResourcesOwners.[Resource ID] = Resources.[Resource ID] " +
             " WHERE  ( ([Owner ID]=1) AND ([OwnerType]=0  and [ResourceType]=0) ) or ([Owner ID]=4 AND ([OwnerType]=8 ));",
         {"+7 495 000|0|0|2|1|0", "555-HOME|0|0|4|4|8"}},
        {"a job's resources: employee, room or job title",
         "Select " + kResources + " , " + " ResourcesOwners.[Owner ID],ResourcesOwners.[OwnerType] " +
             "FROM Resources INNER JOIN ResourcesOwners ON Resources.[Resource ID] = ResourcesOwners.[Resource ID]" +
             " Where ([ResourceType]=2) and ( ( [Owner ID]=1 and [OwnerType]=4) or  ([Owner ID]=2 and [OwnerType]=16) "
             "or  ([Owner ID]=1 and [OwnerType]=2));",
         {"sales@acme.example|2|0|7|1|4", "director@acme.example|2|0|8|1|2"}},
        {"an owner's links", "Select * from ResourcesOwners Where [Owner ID]=1 and [OwnerType]=1;", {"5|1|1"}},
        {"the links of a resource", "Select * from ResourcesOwners Where [Resource ID]=2;", {"2|1|0"}},
        {"a person's address bindings",
         "Select * from AddressesOwners  Where AddressesOwners.[Owner ID]=1 And AddressesOwners.[OwnerType]=0 ;",
         {"4|1|0"}},
        {"a unit's address bindings",
         "Select * from AddressesOwners  Where AddressesOwners.[Owner ID]=1 And AddressesOwners.[OwnerType]=1 ;",
         {"2|1|1"}},
        {"a person's photos, newest first",
         "SELECT Photo.[Personal ID],Photo.Photo From Photo WHERE (((Photo.[Personal ID])=1)) order by Photo.[Photo ID] desc;",
         {"1|<2 bytes>", "1|<1 bytes>"}, true},

        // Recipients: each e-mail once, though the comma join repeats it.
        {"distinctrow gives each resource once over a comma join",
         "Select Distinctrow " + kResources + " From Employees,  Resources INNER JOIN ResourcesOwners ON "
             "Resources.[Resource ID] = ResourcesOwners.[Resource ID]  Where ((ResourcesOwners.[Owner ID]=1 and "
             "ResourcesOwners.[OwnerType]=0) Or (Employees.[Personal ID]=1 and ResourcesOwners.[Owner "
             "ID]=Employees.[Employee ID]  and ResourcesOwners.[OwnerType]=4) Or (Employees.[Personal ID]=1 and "
             "ResourcesOwners.[Owner ID]=Employees.[Job ID]  and ResourcesOwners.[OwnerType]=2)) and "
             "(Resources.[ResourceType]=2) ;",
         {"ivanov@example.ru|2|0|1", "sales@acme.example|2|0|7", "director@acme.example|2|0|8"}},

        // Organizations.
        {"children of the root", "Select * from Organizations  Where Organizations.[Parent ID]=0 or "
                                 "(Organizations.[Parent ID] Is Null)  ;",
         {"Acme|<null>|<null>|1", "Globex|0|<null>|3"}},
        {"children of a unit", "Select * from Organizations  Where Organizations.[Parent ID]=1 ;",
         {"Acme Sales|1|<null>|2"}},
        {"job titles of a unit", "Select * from JobTitles  Where JobTitles.[Organization ID]=2 ;", {"2|Manager|<null>|1"}},
        {"job titles of the root",
         "Select * from JobTitles  Where JobTitles.[Organization ID]=0 or (JobTitles.[Organization ID] Is Null)  ;", {}},
        {"employees of a job, vacancies too", "Select * from Employees Where [Job ID]=3;", {"3|0|<null>|<null>|3"}},
        {"employees of a job with their persons",
         "Select " + kEmployees + "," + kPersonal + " from [Employees], [PersonalData] " +
             "Where [Employees].[Job ID]=1 and [PersonalData].[Personal ID]=[Employees].[Personal ID] ;",
         {"1|1|2|<null>|1|" + kPerson1}},
        {"employees of a room with their persons",
         "Select " + kEmployees + "," + kPersonal + " from [Employees], [PersonalData] " +
             "Where [Employees].[Room ID]=2 and [PersonalData].[Personal ID]=[Employees].[Personal ID] ;",
         {"1|1|2|<null>|1|" + kPerson1}},
        {"a person's jobs through right and left joins", PersonJobsQuery(1),
         {"1|ИВАНОВ Иван|Acme Sales|Manager|2|1|1|1"}},
        {"the jobs of person 0 are none", PersonJobsQuery(0), {}},
        {"rooms at the top of a unit: parent 0 or Null",
         "Select * from Rooms Where [Organization ID]=1 And ([rParent ID]=0 or [rParent ID] Is Null); ",
         {"1|Building 1|-1|<null>|1", "1|Annex|-1|0|3"}},
        {"rooms in a container", "Select * from Rooms Where [Organization ID]=1 And ([rParent ID]=1);",
         {"1|Room 101|0|1|2"}},
        {"employees in a room", "Select * from Employees Where [Room ID]=2;", {"1|1|2|<null>|1"}},
        {"all rooms of a unit", "Select * from Rooms where Rooms.[Organization ID]=1;",
         {"1|Building 1|-1|<null>|1", "1|Room 101|0|1|2", "1|Annex|-1|0|3"}},
        {"child rooms", "Select * from Rooms Where [rParent ID]=1;", {"1|Room 101|0|1|2"}},
        {"a unit's resources",
         "Select " + kResources + ", ResourcesOwners.[Owner ID], ResourcesOwners.[OwnerType] " +
             " From ResourcesOwners INNER JOIN Resources ON ResourcesOwners.[Resource ID] = Resources.[Resource ID] " +
             " Where ([Owner ID]=1 and [OwnerType]=1);",
         {"http://acme.example|1|0|5|1|1"}},
        {"organizations of a project",
         "SELECT " + kOrganizations + "," + kProjects + " From Projects, Organizations " +
             "WHERE (((Organizations.[Organization ID])=[Projects].[Owner ID]) AND ((Projects.OwnerType)=1) and "
             "Projects.Project=\"C:\\Prj\\A\" and Projects.InsArcPrj=False);",
         {"Acme|<null>|<null>|1|1|1|C:\\Prj\\A|0"}},
        {"organizations in no project through a saved query",
         "SELECT " + kOrganizations + "," + kOrgPrj +
             " FROM Organizations left JOIN  OrgPrj ON OrgPrj.[Owner ID] = Organizations.[Organization ID] " +
             " WHERE (((OrgPrj.Project) Is Null) and (Organizations.[Parent ID] is null  or  Organizations.[Parent ID]=0)  ); ",
         {"Globex|0|<null>|3|<null>|<null>|<null>|<null>"}},
        {"job titles of a project",
         "SELECT " + kProjects + "," + kJobTitles + " From Projects, JobTitles " +
             "WHERE (((JobTitles.[Job ID])=[Projects].[Owner ID]) AND ((Projects.OwnerType)=2) and "
             "Projects.Project=\"C:\\Prj\\A\" and Projects.InsArcPrj=False);",
         {"1|2|C:\\Prj\\A|0|2|Manager|<null>|1"}},
        {"employees of a project",
         "SELECT " + kProjects + "," + kEmployees + "," + kPersonal + "," + " JobTitles.[Organization ID]" +
             " From Projects, Employees, PersonalData, JobTitles " +
             "WHERE (((Employees.[Employee ID])=[Projects].[Owner ID]) AND ((Projects.OwnerType)=4) and "
             "Projects.Project=\"C:\\Prj\\A\" and Projects.InsArcPrj=False and (PersonalData.[Personal "
             "ID]=Employees.[Personal ID]) and (JobTitles.[Job ID]=Employees.[Job ID]) );",
         {"1|4|C:\\Prj\\A|0|1|1|2|<null>|1|" + kPerson1 + "|2"}},
        {"Select All means every field", "Select All from Resources Where ResourceType=2;",
         {"ivanov@example.ru|2|0|1", "john@example.com|2|0|3", "a49b@x.org|2|0|6", "sales@acme.example|2|0|7",
          "director@acme.example|2|0|8"}},
        {"a whole table by Select *", "Select * from ResourcesOwners;",
         {"1|1|0", "2|1|0", "3|2|<null>", "4|4|8", "5|1|1", "7|1|4", "6|3|0", "8|1|2"}},
        {"an owner's row by table and key", "Select * from JobTitles Where [Job ID]=3;", {"1|Director|<null>|3"}},

        // Addresses.
        {"children of an address node", "Select * from [PostAddresses]  Where [aParent ID]=2;",
         {"|Tverskaya|2|3|3"}},
        {"root address nodes: parent 0 or Null",
         "Select * from [PostAddresses]  Where [aParent ID]=0 or [aParent ID] Is Null ;",
         {"<null>|Russia|<null>|0|1", "<null>|USA|0|0|5"}},
        {"phones of an address node",
         "Select " + kResources + " , ResourcesOwners.[Owner ID],ResourcesOwners.[OwnerType] " +
             " FROM ResourcesOwners INNER JOIN Resources ON resourcesOwners.[Resource ID] = Resources.[Resource ID] " +
             " WHERE  ([Owner ID]=4 AND ([OwnerType]=8 ) and [ResourceType]=0) ;",
         {"555-HOME|0|0|4|4|8"}},
        {"persons at an address through nested inner joins",
         "SELECT PersonalData.FullName, PersonalData.[Personal ID] FROM ([PostAddresses] INNER JOIN [AddressesOwners] "
         "ON [PostAddresses].[Address ID] = AddressesOwners.[Address ID]) INNER JOIN PersonalData ON "
         "AddressesOwners.[Owner ID] = [PersonalData].[Personal ID] WHERE ((([PostAddresses].[Address ID])=4) and  "
         "AddressesOwners.[OwnerType]=0);",
         {"ИВАНОВ Иван|1", "John Smith|2"}},
        {"organizations at an address",
         "SELECT Organizations.Organization, Organizations.[Organization ID] FROM ([PostAddresses] INNER JOIN "
         "[AddressesOwners] ON [PostAddresses].[Address ID] = AddressesOwners.[Address ID]) INNER JOIN Organizations ON "
         "AddressesOwners.[Owner ID] = [Organizations].[Organization ID] WHERE ((([PostAddresses].[Address ID])=2) and "
         " AddressesOwners.[OwnerType]=1);",
         {"Acme|1"}},
        {"bindings of an address node", "Select * from AddressesOwners Where [Address ID]=4;", {"4|1|0", "4|2|0"}},
        {"children of a node to delete", "Select * from PostAddresses Where [aParent ID]=3;", {"|House 7|3|4|4"}},

        // Photos.
        {"a person's photo by e-mail, newest first", PhotoByMail("IVANOV@example.ru", false),
         {"ivanov@example.ru|2|0|1|1|<2 bytes>|2|" + kPerson1, "ivanov@example.ru|2|0|1|1|<1 bytes>|1|" + kPerson1},
         true},
        {"an employee's photo by e-mail through a right-nested inner join", PhotoByMail("sales@acme.example", true),
         {"sales@acme.example|2|0|7|1|<2 bytes>|2|" + kPerson1 + "|1|1|2|<null>|1",
          "sales@acme.example|2|0|7|1|<1 bytes>|1|" + kPerson1 + "|1|1|2|<null>|1"},
         true},
    };
}

std::vector<Criteria> CriteriaForms() {
    const std::string persons = "Select * from PersonalData";
    return {
        {"a person by identity", persons, "[Personal ID]=3", {"Doe|Jane|<null>|Jane Doe|<null>|3"}},
        {"Cyrillic names match without case", persons, "[FullName]=\"иванов иван\"", {kPerson1}},
        {"an organization by identity", "Select * from Organizations", "[Organization ID]=2", {"Acme Sales|1|<null>|2"}},
        {"an employee by identity, a vacancy too", "Select * from Employees", "[Employee ID]=3", {"3|0|<null>|<null>|3"}},
        {"a job title by identity", "Select * from JobTitles", "[Job ID]=1", {"2|Manager|<null>|1"}},
        {"an employee by job", "Select * from Employees", "[Job ID]=1", {"1|1|2|<null>|1"}},
        {"a room by identity", "Select * from Rooms", "[Room ID]=2", {"1|Room 101|0|1|2"}},
        {"a resource by identity", "Select * from Resources", "[Resource ID]=3", {"john@example.com|2|0|3"}},
        {"a resource by identity and kind, blank after the sign", "Select * from Resources",
         "[Resource ID]= 7 And [ResourceType]=2", {"sales@acme.example|2|0|7"}},
        {"an address node by identity", "Select * from PostAddresses", "[Address ID]=4", {"|House 7|3|4|4"}},
        {"a project row by path and flag",
         "SELECT Projects.[Owner ID], Projects.OwnerType, Projects.Project, Projects.InsArcPrj From Projects "
         "WHERE (((Projects.[Owner ID])=1) AND ((Projects.OwnerType)=0));",
         "[Project]=\"C:\\PRJ\\A\" AND [InsArcPrj]=False", {"1|0|C:\\Prj\\A|0"}},
        {"a project row by owner, type, path and flag", "Select * from Projects",
         " [Owner ID]=1 and OwnerType=0 and Project=\"c:\\arc\\old\" and InsArcPrj=True", {"1|0|C:\\Arc\\Old|-1"}},
        {"a link by resource, owner and type", "Select * from ResourcesOwners",
         "[Resource ID]=7 and [Owner ID]=1 and [OwnerType]=4", {"7|1|4"}},
        {"a qualified name finds the field of a join by its bare part",
         GetPrjPersonsQuery("(Projects.Project)=\"C:\\Prj\\A\"", false),
         "[Projects].[Owner ID]=1 and [Projects].[OwnerType]=0", {"1|Иванов|Иван|Иванович|ИВАНОВ Иван|C:\\Prj\\A|0|1|0"}},
        {"an employee of a job's list, blank after the sign",
         "Select " + kEmployees + "," + kPersonal + " from [Employees], [PersonalData] " +
             "Where [Employees].[Job ID]=1 and [PersonalData].[Personal ID]=[Employees].[Personal ID] ;",
         "[Employee ID]= 1", {"1|1|2|<null>|1|" + kPerson1}},
        {"an address binding of a unit", "Select * from AddressesOwners",
         "[Address ID]=2 And [Owner ID]=1 And [OwnerType]=1", {"2|1|1"}},
        {"a card's person: an empty part matches an empty column", persons,
         "([FirstName]=\"smith\") and ([MiddleName]=\"JOHN\") and ([SurName]=\"\" or ([SurName] Is Null) )", {kPerson2}},
        {"a card's person: an empty part matches a Null column", persons,
         "([FirstName]=\"Doe\") and ([MiddleName]=\"Jane\") and ([SurName]=\"\" or ([SurName] Is Null) )",
         {"Doe|Jane|<null>|Jane Doe|<null>|3"}},
        {"a card's person: a filled part does not match Null", persons,
         "([FirstName]=\"Doe\") and ([MiddleName]=\"Jane\") and ([SurName]=\"X\")", {}},
        {"an address node under a parent", "Select * from PostAddresses",
         "([Address]=\"moscow\") and ([aType]=2) and ([aParent ID]=1)", {"101000|Moscow|1|2|2"}},
        {"a root address node with parent 0", "Select * from PostAddresses",
         "([Address]=\"USA\") and ([aType]=0) and ((([aParent ID]=0) or([aParent ID] Is Null) ))", {"<null>|USA|0|0|5"}},
        {"a root address node with a Null parent", "Select * from PostAddresses",
         "([Address]=\"russia\") and ([aType]=0) and ((([aParent ID]=0) or([aParent ID] Is Null) ))",
         {"<null>|Russia|<null>|0|1"}},
        {"a top organization by name", "Select * from Organizations",
         "([Organization]=\"acme\") and (([Parent ID]=0) or ([Parent ID] Is Null) )", {"Acme|<null>|<null>|1"}},
        {"a subdivision by name and parent", "Select * from Organizations",
         "([Organization]=\"Acme Sales\") and ([Parent ID]=1)", {"Acme Sales|1|<null>|2"}},
        {"a job title by name and unit", "Select * from JobTitles", "([JobTitle]=\"manager\") and ([Organization ID]=2)",
         {"2|Manager|<null>|1"}},
        {"an employee by person and job", "Select * from Employees", "([Personal ID]=2) and ([Job ID]=2)",
         {"2|2|0|<null>|2"}},
        {"an address binding by its three columns", "Select * from AddressesOwners",
         "([Address ID]=4) and ([Owner ID]=2) and ([OwnerType]=0)", {"4|2|0"}},
        {"a resource by text and kind", "Select * from Resources",
         "([ResourceString]=\"JOHN@example.com\") and ([ResourceType]=2)", {"john@example.com|2|0|3"}},
        {"a link with a Null owner type is not of type 0", "Select * from ResourcesOwners",
         "([Resource ID]=3) and ([Owner ID]=2) and ([OwnerType]=0)", {}},
        {"an owner's links", "Select * from ResourcesOwners", "([Owner ID]=1) and ([OwnerType]=0)", {"1|1|0", "2|1|0"}},
        {"a resource by text, identity and kind, two blanks", "Select * from Resources",
         "([ResourceString]=\"+7 495 000\") and  ([Resource ID]=2) and ([ResourceType]=0)", {"+7 495 000|0|0|2"}},
        {"a record by a key column named at run time", "Select * from Rooms", "[Room ID]= 3", {"1|Annex|-1|0|3"}},
    };
}

std::string TestName(const char* name) {
    std::string n;
    for (char c : std::string(name)) n += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return n;
}

}  // namespace zelvo::dao::jet::testing
