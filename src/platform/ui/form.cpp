#include "platform/ui/form.h"

namespace zelvo::ui {

void Form::Show() {
    if (unloaded_) return;  // an unloaded window is gone; showing it again would draw dead controls
    Assign(visible_, true);
}

void Form::Hide() { Assign(visible_, false); }

void Form::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    QueryUnload();
    visible_ = false;
    Changed();
}

void Form::SetProp(const std::string& name, std::int32_t value) {
    auto [it, inserted] = props_.try_emplace(name, value);
    if (!inserted) {
        if (it->second == value) return;
        it->second = value;
    }
    Changed();
}

std::optional<std::int32_t> Form::GetProp(const std::string& name) const {
    auto it = props_.find(name);
    if (it == props_.end()) return std::nullopt;
    return it->second;
}

void Form::RemoveProp(const std::string& name) {
    if (props_.erase(name)) Changed();
}

void Form::AddControl(const std::string& name, ControlRef control) {
    for (auto& [n, c] : controls_)
        if (n == name) {
            c = control;
            return;
        }
    controls_.emplace_back(name, control);
}

std::optional<ControlRef> Form::FindControl(const std::string& name) const {
    for (const auto& [n, c] : controls_)
        if (n == name) return c;
    return std::nullopt;
}

}  // namespace zelvo::ui
