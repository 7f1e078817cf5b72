#include "platform/ui/project_picker.h"

#include "platform/ui/ui_host.h"

namespace zelvo::ui {

void ProjectPicker::Show() {
    auto answer = CurrentUiHost().ShowProjectPicker({appPath_, rootFolder_, title_, path_});
    cancelled_ = !answer;
    projectPath_ = answer ? answer->projectPath : std::string();
    folder_ = answer ? answer->folder : std::string();
    if (answer) path_ = answer->projectPath;
}

ProjectPicker& SharedProjectPicker() {
    static ProjectPicker picker;
    return picker;
}

}  // namespace zelvo::ui
