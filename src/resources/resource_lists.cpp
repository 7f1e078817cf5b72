#include "resources/resource_lists.h"

#include <type_traits>

#include "hostservices/lng_text.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "store/library_state.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

std::string Trim(const std::string& s) {
    size_t b = s.find_first_not_of(' ');
    if (b == std::string::npos) return {};
    return s.substr(b, s.find_last_not_of(' ') - b + 1);
}

// The one walk the three fills share: from the last record to the first,
// each row put in front of the ones before, which gives the record set's
// order in the list. `text` makes a row's text from its ResourceString.
// A report-style routine lets the first failure end it: its guard runs each
// step as it is.
struct LetItThrow {
    template <class F, class T = std::invoke_result_t<F>>
    T Resume(F&& f, T = T{}) const { return f(); }
    template <class F>
    bool Do(F&& f) const { f(); return true; }
};

template <class Guard, class MakeText, class Decorate>
void FillFromLast(dao::Recordset& Rs, ui::ListView& Lvw, const std::string& icon, const Guard& on,
                  MakeText text, Decorate decorate) {
    // An empty record set fails the move: that is no error, the count is 0.
    std::int64_t n = 0;
    try {
        Rs.MoveLast();
        n = Rs.RecordCount();
    } catch (const Error&) {
    }
    Lvw.ListItems().Clear();
    // One repaint after the fill, also when a failure ends it early.
    struct RedrawOff {
        ui::ListView& lvw;
        bool was = lvw.AllowRedraw();
        RedrawOff(ui::ListView& l) : lvw(l) { if (was) lvw.SetAllowRedraw(false); }
        ~RedrawOff() { if (was) lvw.SetAllowRedraw(true); }
    } redrawOff(Lvw);
    for (std::int64_t i = 1; i <= n; ++i) {
        ui::ListItem& item = Lvw.ListItems().Add(1, {}, text(ValueConv::ToText(on.Resume([&] { return Rs("ResourceString"); }))),
                                                 Variant(icon), Variant(icon));
        item.SetTag(Variant(std::int64_t{ValueConv::ToLong(on.Resume([&] { return Rs("Resource ID"); }))}));
        decorate(item);
        if (i < n) on.Do([&] { Rs.MovePrevious(); });
    }
}

std::string AsIs(const std::string& s) { return s; }
void Plain(ui::ListItem&) {}

}  // namespace

std::string ResourceIcon(std::int32_t ResType) {
    switch (ResType) {
        case rsPhone: return "Phone";
        case rsWebPage: return "IE";
        case RsEmail: return "Email";
        case rsICQ: return "ICQ";
        default: return {};
    }
}

void FillLvwResources(dao::Recordset& Rs, ui::ListView& Lvw, std::int32_t ResType) {
    OnErrorResumeNext on("Module1.FillLvwResources");
    FillFromLast(Rs, Lvw, ResourceIcon(ResType), on, AsIs, Plain);
}

void FillLvwEmails(dao::Recordset& Rs, ui::ListView& Lvw) { FillLvwResources(Rs, Lvw, RsEmail); }

void FilllvwPhones(dao::Recordset& Rs, ui::ListView& Lvw) {
    OnErrorResumeNext on("Module1.FilllvwPhones");
    if (!on.Resume([&] { return Rs.AbsolutePosition() != -1; })) {
        Lvw.ListItems().Clear();
        return;
    }
    const std::string phone = LngText("Module1.FilllvwPhones", "Phone", "Phone");
    const bool typeColumn = Lvw.ColumnHeaders().Count() > 1;
    FillFromLast(Rs, Lvw, "Phone", on, AsIs, [&](ui::ListItem& item) {
        if (typeColumn) on.Do([&] { item.SetSubItems(1, phone); });
    });
}

void NavigateWebList(dao::Recordset& Rs, ui::ListView& Lvw) {
    try {
        const std::string noAddress = "<" + LngText("Module1.NavigateWebList", "Addr", "No address given") + ">";
        FillFromLast(
            Rs, Lvw, "IE", LetItThrow{},
            [&](const std::string& s) {
                std::string t = Trim(s);
                return t.empty() ? noAddress : t;
            },
            Plain);
    } catch (const Error& e) {
        ShellPaths().ReportError(e, "frmMain.NavigateWebList");
    }
}

}  // namespace zelvo
