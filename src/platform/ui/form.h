// A window as the library's windows see it: a caption, whether it is shown,
// its window state, named window properties (the shell finds the windows of
// its spaces by the property "Space ID") and its controls by name.
//
// A window class derives from Form, builds its controls as members, and
// registers each under the name the host and the scripted driver use
// ("LvwUser", "tbPrj", …). The host draws the registered controls and
// raises their events; the window class holds all the logic.
//
// Lifetime: Show makes the window visible, Hide hides it and keeps it
// loaded; Unload (the frame's close button, or the code) runs QueryUnload
// once, hides the window and marks it unloaded. A wait loop ends when the
// window is no longer visible, for either reason.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/ui/combo_box.h"
#include "platform/ui/listview.h"
#include "platform/ui/menu.h"
#include "platform/ui/observable.h"
#include "platform/ui/picture_box.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/tab_strip.h"
#include "platform/ui/toolbar.h"

namespace zelvo::ui {

enum FormWindowState : int { vbNormal = 0, vbMinimized = 1, vbMaximized = 2 };

// One control of a window, whatever its kind.
using ControlRef = std::variant<ListView*, Toolbar*, TextBox*, Label*, CommandButton*, ComboBox*, TabStrip*,
                                StatusBar*, Menu*, PictureBox*>;

class Form : public Observable {
public:
    explicit Form(std::string name) : name_(std::move(name)) {}
    virtual ~Form() = default;

    // The window's class name, e.g. "frmPersons".
    const std::string& Name() const { return name_; }

    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption) { Assign(caption_, caption); }
    int WindowState() const { return windowState_; }
    void SetWindowState(int state) { Assign(windowState_, state); }

    bool Visible() const { return visible_; }
    void Show();
    void Hide();
    // Runs QueryUnload the first time, then hides. Later calls do nothing.
    void Unload();
    bool Unloaded() const { return unloaded_; }

    // Named window properties (integers), as the desktop keeps them on a
    // window's handle. Setting one tells the observers.
    void SetProp(const std::string& name, std::int32_t value);
    std::optional<std::int32_t> GetProp(const std::string& name) const;
    void RemoveProp(const std::string& name);
    const std::map<std::string, std::int32_t>& Props() const { return props_; }

    // The registered controls in the order they were registered (the order
    // a host lays them out and a dump lists them). Registering a name again
    // replaces its control.
    void AddControl(const std::string& name, ControlRef control);
    const std::vector<std::pair<std::string, ControlRef>>& Controls() const { return controls_; }
    // The control of `name`, or nothing.
    std::optional<ControlRef> FindControl(const std::string& name) const;

protected:
    // What the window does when it is unloaded (closing its record sets and
    // its database). Runs once.
    virtual void QueryUnload() {}

private:
    std::string name_;
    std::string caption_;
    int windowState_ = vbNormal;
    bool visible_ = false;
    bool unloaded_ = false;
    std::map<std::string, std::int32_t> props_;
    std::vector<std::pair<std::string, ControlRef>> controls_;
};

}  // namespace zelvo::ui
