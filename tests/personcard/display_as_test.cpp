#include "personcard/display_as.h"

#include <gtest/gtest.h>

namespace zelvo::testing {
namespace {

// The suggestions joined by "|".
std::string Joined(const std::vector<std::string>& items) {
    std::string s;
    for (const std::string& item : items) s += (s.empty() ? "" : "|") + item;
    return s;
}

TEST(FillDisplayAs, SuggestionsForNamesInEachShape) {
    struct Case {
        const char* name;
        const char* F;
        const char* N;
        const char* P;
        const char* current;
        const char* org;
        const char* expected;
    };
    const Case cases[] = {
        {"all three parts", "Ivanov", "Ivan", "Petrovich", "", "",
         "Ivanov Ivan Petrovich|Ivan Petrovich Ivanov|Ivanov I. P.|I. P. Ivanov"},
        // Without N and P, items 3 and 4 are F alone, and both stand.
        {"last name only", "Smith", "", "", "", "", "Smith|Smith|Smith|Smith"},
        {"initials are whole characters", "Иванов", "Иван", "Иванович", "", "",
         "Иванов Иван Иванович|Иван Иванович Иванов|Иванов И. И.|И. И. Иванов"},
        {"no last name: item 4 keeps its blank", "", "Ivan", "", "", "", "Ivan|Ivan|I.|I. "},
        {"a text equal to an item up to blanks adds nothing", "Smith", "John", "", "  Smith John ", "",
         "Smith John|John Smith|Smith J.|J. Smith"},
        {"a nick name stands last", "Smith", "John", "", "Johnny", "", "Smith John|John Smith|Smith J.|J. Smith|Johnny"},
        {"the organization is fifth", "Smith", "", "", "", "Acme Ltd", "Smith|Smith|Smith|Smith|Acme Ltd"},
        {"an organization of blanks is none", "Smith", "", "", "", "   ", "Smith|Smith|Smith|Smith"},
        {"the organization as display name adds nothing", "Smith", "", "", "Acme Ltd", "Acme Ltd",
         "Smith|Smith|Smith|Smith|Acme Ltd"},
        {"case counts", "Smith", "", "", "SMITH", "", "Smith|Smith|Smith|Smith|SMITH"},
        {"nothing at all", "", "", "", "", "", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Joined(FillDisplayAs(c.F, c.N, c.P, c.current, c.org)), c.expected) << c.name;
}

}  // namespace
}  // namespace zelvo::testing
