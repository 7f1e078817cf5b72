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
            if (EqualNoCase(f[k], full)) return static_cast<int>(k);
        if (!qualifier.empty()) {
            for (std::size_t k = 0; k < f.size(); ++k)
                if (EqualNoCase(f[k], name)) return static_cast<int>(k);
        }
        int found = -1;
        for (std::size_t k = 0; k < f.size(); ++k) {
            const std::string& field = f[k];
            std::size_t dot = field.rfind('.');
            if (dot == std::string::npos || !EqualNoCase(std::string_view(field).substr(dot + 1), name)) continue;
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

// Fields compared with "=" to a literal in the top-level conjunction.
void CollectEqualities(const Expr& e, const FieldScope& scope, std::vector<int>& out) {
    if (e.kind == Expr::Kind::Binary && e.op == "AND") {
        CollectEqualities(*e.args[0], scope, out);
        CollectEqualities(*e.args[1], scope, out);
        return;
    }
    if (e.kind != Expr::Kind::Binary || e.op != "=") return;
    const Expr* col = e.args[0].get();
    const Expr* lit = e.args[1].get();
    if (col->kind != Expr::Kind::Column) std::swap(col, lit);
    if (col->kind != Expr::Kind::Column || lit->kind != Expr::Kind::Literal) return;
    int k = scope.Find(col->qualifier, col->name);
    if (k >= 0) out.push_back(k);
}

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
    CollectEqualities(*e, scope, tr.equalityFields);
    return tr;
}

}  // namespace zelvo::dao::jet
