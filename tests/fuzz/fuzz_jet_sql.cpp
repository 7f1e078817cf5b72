// Feeds arbitrary text to the translator and the runtime helpers.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/core/error.h"
#include "platform/dao/jet/jet_sql.h"

namespace {

using namespace zelvo::dao::jet;

// A few tables of the book, enough for names to resolve and joins to form.
class FuzzCatalog : public Catalog {
public:
    std::optional<CatalogObject> Find(std::string_view name) const override {
        static const CatalogObject objects[] = {
            {"PersonalData", false, {"FirstName", "MiddleName", "SurName", "FullName", "Comments", "Personal ID"}},
            {"Projects", false, {"Owner ID", "OwnerType", "Project", "InsArcPrj"}},
            {"Resources", false, {"ResourceString", "ResourceType", "ResourceSubType", "Resource ID"}},
            {"ResourcesOwners", false, {"Resource ID", "Owner ID", "OwnerType"}},
            {"PersPrj", true, {"Owner ID", "OwnerType", "Project", "InsArcPrj"}},
        };
        for (const CatalogObject& o : objects) {
            if (o.name.size() != name.size()) continue;
            bool same = true;
            for (std::size_t i = 0; i < name.size() && same; ++i)
                same = std::tolower(static_cast<unsigned char>(o.name[i])) ==
                       std::tolower(static_cast<unsigned char>(name[i]));
            if (same) return o;
        }
        return std::nullopt;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    static const FuzzCatalog catalog;
    try {
        Shape shape = Parameterize(text);
        try {
            TranslateStatement(shape, catalog);
        } catch (const zelvo::Error&) {
        }
        try {
            TranslateView(shape, catalog);
        } catch (const zelvo::Error&) {
        }
        TranslateCriteria(shape, {"FullName", "PersonalData.Personal ID", "Projects.Owner ID"});
    } catch (const zelvo::Error&) {
    }
    std::size_t cut = text.find('\n');
    std::string_view a = text.substr(0, cut), b = cut == std::string_view::npos ? "" : text.substr(cut + 1);
    JetLike(a, b);
    int ab = CompareText(a, b), ba = CompareText(b, a);
    if ((ab < 0 && ba <= 0) || (ab > 0 && ba >= 0) || (ab == 0 && ba != 0)) __builtin_trap();
    return 0;
}
