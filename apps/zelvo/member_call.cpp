#include "member_call.h"

#include "control_json.h"
#include "json_writer.h"
#include "platform/core/error.h"

namespace zelvo::cli {

std::string Signature(const DispMember& m) {
    std::string s = m.name;
    if (m.kind == DispKind::Property)
        return s + " As " + (m.resultClass.empty() ? DispTypeName(*m.result) : m.resultClass) + " (property" +
               (m.readOnly ? ", read-only)" : ")");
    s += "(";
    for (size_t i = 0; i < m.params.size(); ++i) {
        const DispParam& p = m.params[i];
        s += i ? ", " : "";
        if (p.optional) s += "Optional ";
        s += p.byRef ? "ByRef " : "";
        s += p.name + " As " + DispTypeName(p.type);
        if (p.defaultValue) s += " = " + JsonValue(*p.defaultValue);
    }
    s += ")";
    if (m.result) s += " As " + (m.resultClass.empty() ? std::string(DispTypeName(*m.result)) : m.resultClass);
    return s;
}

bool IsUsageError(int number) {
    return number == 438 || number == 449 || number == 450 || number == 13 || number == 6 || number == 94 ||
           number == 424 || number == 383;
}

void SetUpHostList(ui::ListView& lv) {
    lv.SetView(ui::lvwReport);
    for (const char* h : {"Name", "Type", "E-mail"}) lv.ColumnHeaders().Add(h);
    // The icons of every kind of row, as a host's list has them: without
    // them Navigate adds no office objects.
    auto icons = std::make_shared<ui::ImageList>();
    for (const char* key : {"User", "Org", "SubDiv", "JobTitle", "Employee"}) icons->ListImages().Add(key, nullptr);
    lv.SetSmallIcons(icons);
}

std::string MemberCall::SetProperty(cAddressbook& book, const std::string& name, const std::string& value) {
    const DispMember* p = FindcAddressbookMember(name);
    if (!p || p->kind != DispKind::Property) return "cAddressbook has no property '" + name + "'";
    try {
        zelvo::SetProperty(book, name, Variant(value));
    } catch (const Error& e) {
        return "--set " + name + ": '" + value + "' is no " + DispTypeName(*p->result) + " (" + e.description() + ")";
    }
    return {};
}

std::string MemberCall::Prepare(const std::vector<std::optional<std::string>>& values) {
    size_t next = 0;
    if (member_.kind == DispKind::Property) {
        if (values.size() > 1) return "a property takes at most one value";
        if (!values.empty() && values[0]) args_.emplace_back(Variant(*values[0]));
        next = values.size();
    }
    for (const DispParam& p : member_.params) {
        if (p.type == DispType::Object) {
            if (p.name.rfind("Data", 0) == 0) {
                datas_.emplace_back();
                dataArgs_.emplace_back(p.name, &datas_.back());
                args_.emplace_back(&datas_.back());
            } else {
                // A list as a host shows persons: name, type, e-mail.
                ui::ListView& lv = lists_.emplace_back();
                SetUpHostList(lv);
                listArgs_.emplace_back(p.name, &lv);
                args_.emplace_back(&lv);
            }
        } else if (next < values.size() && values[next]) {
            args_.emplace_back(Variant(*values[next++]));
        } else {
            if (next < values.size()) ++next;
            args_.emplace_back();  // left out
        }
    }
    if (next < values.size())
        return member_.name + " takes " + std::to_string(next) + " argument" + (next == 1 ? "" : "s") + ", not " +
               std::to_string(values.size()) + ": " + Signature(member_);
    // Trailing arguments that were left out are not passed at all.
    while (!args_.empty() && !args_.back().value && std::holds_alternative<std::monostate>(args_.back().object))
        args_.pop_back();
    return {};
}

Variant MemberCall::Invoke(cAddressbook& book) { return zelvo::Invoke(book, member_.name, args_); }

std::string MemberCall::ResultJson(const Variant& result) const {
    std::string json = "\"result\": " + JsonValue(result) + ", \"byref\": {";
    bool first = true;
    for (size_t i = 0; i < member_.params.size() && i < args_.size(); ++i) {
        const DispParam& p = member_.params[i];
        if (!p.byRef || p.type == DispType::Object || !args_[i].value) continue;
        json += (first ? "" : ", ") + JsonString(p.name) + ": " + JsonValue(*args_[i].value);
        first = false;
    }
    return json + "}";
}

std::string MemberCall::RowsJson() const {
    std::string json = "{";
    bool first = true;
    for (const auto& [name, lv] : listArgs_) {
        json += (first ? "" : ", ") + JsonString(name) + ": " + ListRowsJson(*lv);
        first = false;
    }
    for (const auto& [name, data] : dataArgs_) {
        json += (first ? "" : ", ") + JsonString(name) + ": " + DataRowsJson(*data);
        first = false;
    }
    return json + "}";
}

}  // namespace zelvo::cli
