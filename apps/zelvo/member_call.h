// One late-bound call of a cAddressbook member as the command-line host
// makes it, shared by `zelvo call` and `zelvo ui`: the properties set
// first, the controls the member takes made here, the values converted by
// the dispatch, and the result with the by-reference values as JSON.
#pragma once

#include <list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "zelvo/addressbook.h"
#include "zelvo/dispatch.h"

namespace zelvo::cli {

// "Name(ByRef Path As String) As String", as `zelvo call --members` lists.
std::string Signature(const DispMember& m);

// Numbers of the dispatch that mean the caller asked wrongly (exit 2).
bool IsUsageError(int number);

// Makes `lv` a list as a host shows persons and office objects: the name,
// type and e-mail columns, and an icon for every kind of row.
void SetUpHostList(ui::ListView& lv);

class MemberCall {
public:
    explicit MemberCall(const DispMember& member) : member_(member) {}
    MemberCall(const MemberCall&) = delete;
    MemberCall& operator=(const MemberCall&) = delete;

    const DispMember& Member() const { return member_; }

    // Sets `name` to `value` on `book`. Returns "" or the reason it failed
    // (no such property, a value of the wrong type).
    static std::string SetProperty(cAddressbook& book, const std::string& name, const std::string& value);

    // The arguments in parameter order: the value texts for the value
    // parameters (nullopt: left out), lists and data controls made here for
    // the object parameters. Returns "" or the reason the values do not fit
    // (too many for a property).
    std::string Prepare(const std::vector<std::optional<std::string>>& values);

    // Calls the member; the dispatch's errors are thrown.
    Variant Invoke(cAddressbook& book);

    // "\"result\": …, \"byref\": {…}" of the last call, without braces.
    std::string ResultJson(const Variant& result) const;
    // "{name: rows, …}" of the lists and data controls made for the call.
    std::string RowsJson() const;

private:
    const DispMember& member_;
    std::list<ui::ListView> lists_;
    std::list<ui::DataControl> datas_;
    std::vector<DispArg> args_;
    std::vector<std::pair<std::string, ui::ListView*>> listArgs_;
    std::vector<std::pair<std::string, ui::DataControl*>> dataArgs_;
};

}  // namespace zelvo::cli
