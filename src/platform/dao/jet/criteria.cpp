// TranslateCriteria: the criteria string of FindFirst/FindNext/… over the
// fields of an open record set.
#include "platform/dao/jet/errors.h"
#include "platform/dao/jet/writer.h"

namespace zelvo::dao::jet {

namespace {

// Field i of the record set is the column "f<i>" of the engine's row source.
// A reference finds its field by the field's full name ("Personal ID" or
// "PersonalData.Personal ID"), and a bare or qualified reference may also
// name a qualified field by its bare part when only one field has it.
struct FieldScope : NameScope {
    const std::vector<std::string>* fields = nullptr;

    int Find(const std::string& qualifier, const std::string& name) const {
        const auto& f = *fields;
        std::string full = qualifier.empty() ? name : qualifier + "." + name;
        for (std::size_t k = 0; k < f.size(); ++k)
            if (SameName(f[k], full)) return static_cast<int>(k);
        if (!qualifier.empty()) {
            for (std::size_t k = 0; k < f.size(); ++k)
                if (SameName(f[k], name)) return static_cast<int>(k);
        }
        int found = -1;
        for (std::size_t k = 0; k < f.size(); ++k) {
            const std::string& field = f[k];
            std::size_t dot = field.rfind('.');
            if (dot == std::string::npos || !SameName(std::string_view(field).substr(dot + 1), name)) continue;
            if (found >= 0) return -1;  // two tables have it: the bare name says nothing
            found = static_cast<int>(k);
        }
        return found;
    }

    bool Resolve(const std::string& qualifier, const std::string& name, std::string& sql) const override {
        int k = Find(qualifier, name);
        if (k < 0) ThrowUnknownFieldInCriteria(qualifier.empty() ? name : qualifier + "." + name);
        sql = "\"f" + std::to_string(k) + "\"";
        return true;
    }
};


}  // namespace

CriteriaTranslation TranslateCriteria(const Shape& shape, const std::vector<std::string>& fields) {
    Parser parser(shape.key, shape.literals);
    ExprPtr e = parser.ParseCriteria();
    Writer w(parser, nullptr);
    w.criteriaMode = true;
    FieldScope scope;
    scope.fields = &fields;
    CriteriaTranslation tr;
    tr.sql = w.Expression(*e, scope);
    w.CheckUnknownNames();
    tr.cacheable = w.cacheable;
    for (const Expr* col : ColumnsComparedWithLiterals(*e))
        if (int k = scope.Find(col->qualifier, col->name); k >= 0) tr.equalityFields.push_back(k);
    return tr;
}

}  // namespace zelvo::dao::jet
