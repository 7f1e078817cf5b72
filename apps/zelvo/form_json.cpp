#include "form_json.h"

#include "control_json.h"
#include "json_writer.h"

namespace zelvo::cli {

namespace {

const char* Bool(bool b) { return b ? "true" : "false"; }

std::string Shown(bool enabled, bool visible) {
    return std::string("\"enabled\": ") + Bool(enabled) + ", \"visible\": " + Bool(visible);
}

std::string MenuJson(const ui::Menu& m) {
    std::string out = "{\"caption\": " + JsonString(m.Caption()) + ", \"checked\": " + Bool(m.Checked()) + ", " +
                      Shown(m.Enabled(), m.Visible()) + ", \"items\": {";
    for (int i = 1; i <= m.Count(); ++i)
        out += (i > 1 ? ", " : "") + JsonString(m.Item(i).Name()) + ": " + MenuJson(m.Item(i));
    return out + "}}";
}

struct ControlJson {
    std::string operator()(const ui::ListView* lv) const {
        return "{\"rows\": " + ListRowsJson(*lv, true) + ", " + Shown(lv->Enabled(), lv->Visible()) + "}";
    }
    std::string operator()(const ui::Toolbar* tb) const {
        std::string out = "{\"buttons\": {";
        for (int i = 1; i <= tb->Count(); ++i) {
            const ui::Button& b = tb->Buttons(i);
            if (b.Key().empty()) continue;  // separators: nothing to find them by
            out += (out.back() == '{' ? "" : ", ") + JsonString(b.Key()) + ": {\"pressed\": " + Bool(b.Value()) +
                   ", " + Shown(b.Enabled(), b.Visible()) + ", \"image\": " + JsonValue(b.Image()) +
                   ", \"tip\": " + JsonString(b.ToolTipText()) + ", \"caption\": " + JsonString(b.Caption()) + "}";
        }
        return out + "}, " + Shown(tb->Enabled(), tb->Visible()) + "}";
    }
    std::string operator()(const ui::TextBox* t) const {
        return "{\"text\": " + JsonString(t->Text()) + ", " + Shown(t->Enabled(), t->Visible()) +
               ", \"locked\": " + Bool(t->Locked()) + "}";
    }
    std::string operator()(const ui::Label* l) const {
        return "{\"caption\": " + JsonString(l->Caption()) + ", " + Shown(l->Enabled(), l->Visible()) + "}";
    }
    std::string operator()(const ui::CommandButton* b) const {
        return "{\"caption\": " + JsonString(b->Caption()) + ", " + Shown(b->Enabled(), b->Visible()) + "}";
    }
    std::string operator()(const ui::ComboBox* c) const {
        std::string out = "{\"text\": " + JsonString(c->Text()) + ", \"listIndex\": " +
                          std::to_string(c->ListIndex()) + ", \"list\": [";
        for (int i = 0; i < c->ListCount(); ++i) out += (i ? ", " : "") + JsonString(c->List(i));
        return out + "], " + Shown(c->Enabled(), c->Visible()) + "}";
    }
    std::string operator()(const ui::TabStrip* t) const {
        std::string out = "{\"tab\": " + std::to_string(t->Tab()) + ", \"tabs\": [";
        for (int i = 0; i < t->Tabs(); ++i) out += (i ? ", " : "") + JsonString(t->TabCaption(i));
        return out + "], " + Shown(t->Enabled(), t->Visible()) + "}";
    }
    std::string operator()(const ui::StatusBar* s) const {
        std::string out = "{\"simpleText\": " + JsonString(s->SimpleText()) + ", \"panels\": [";
        for (int i = 1; i <= s->PanelCount(); ++i) out += (i > 1 ? ", " : "") + JsonString(s->PanelText(i));
        return out + "], \"visible\": " + Bool(s->Visible()) + "}";
    }
    std::string operator()(const ui::Menu* m) const { return MenuJson(*m); }
    std::string operator()(const ui::PictureBox* p) const {
        return "{\"width\": " + std::to_string(p->Width) + ", \"height\": " + std::to_string(p->Height) +
               ", \"picture\": " + Bool(p->Picture != nullptr) + "}";
    }
};

}  // namespace

std::string FormJson(const ui::Form& form) {
    std::string out = "{\"form\": " + JsonString(form.Name()) + ", \"caption\": " + JsonString(form.Caption()) +
                      ", \"visible\": " + Bool(form.Visible()) + ", \"controls\": {";
    bool first = true;
    for (const auto& [name, control] : form.Controls()) {
        out += (first ? "" : ", ") + JsonString(name) + ": " + std::visit(ControlJson{}, control);
        first = false;
    }
    return out + "}}";
}

}  // namespace zelvo::cli
