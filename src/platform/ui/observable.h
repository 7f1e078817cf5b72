// What every control model shares: observers told after each change, and the
// three properties every control of a window has (Enabled, Visible and the
// tooltip). A host binds a widget by observing its model and redrawing it;
// the model never knows who draws it.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zelvo::ui {

class Observable {
public:
    using Observer = std::function<void()>;

    Observable() = default;
    // A control is owned by its window and found by address; copying one
    // would leave the observers of the copy pointing at the original.
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;

    // `observer` is called after every change. Returns an id for Unobserve.
    int Observe(Observer observer) {
        observers_.emplace_back(nextId_, std::move(observer));
        return nextId_++;
    }
    void Unobserve(int id) {
        std::erase_if(observers_, [id](const auto& o) { return o.first == id; });
    }

    // Tells the observers. Public so that the parts of a control (a toolbar's
    // button, a menu's item) can report their own changes through it.
    void Changed() const {
        // An observer may unobserve itself while being told: walk a copy.
        auto observers = observers_;
        for (const auto& [id, observer] : observers) observer();
    }

protected:
    // Assigns and tells the observers, only when the value is new.
    template <typename T, typename U>
    void Assign(T& field, U&& value) {
        if (field == value) return;
        field = std::forward<U>(value);
        Changed();
    }

private:
    std::vector<std::pair<int, Observer>> observers_;
    int nextId_ = 1;
};

// The properties every control has. A person can act on a control only
// while it is enabled and visible; the User… calls of the controls check it.
class Control : public Observable {
public:
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { Assign(enabled_, enabled); }
    bool Visible() const { return visible_; }
    void SetVisible(bool visible) { Assign(visible_, visible); }
    const std::string& ToolTipText() const { return toolTip_; }
    void SetToolTipText(const std::string& text) { Assign(toolTip_, text); }

    // Whether a person could reach the control now.
    bool Usable() const { return enabled_ && visible_; }

private:
    bool enabled_ = true;
    bool visible_ = true;
    std::string toolTip_;
};

}  // namespace zelvo::ui
