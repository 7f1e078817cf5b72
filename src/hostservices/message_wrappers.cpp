#include "hostservices/message_wrappers.h"

#include "platform/core/error.h"
#include "platform/ui/ui_host.h"

namespace zelvo {

int UniMsgBox(const std::string& Prompt, int Buttons, const std::string& Title, const std::string& HelpFile,
              int Context) {
    ui::MessageBoxRequest request;
    request.prompt = Prompt;
    request.buttons = Buttons;
    request.title = Title.empty() ? kApplicationTitle : Title;
    request.helpFile = HelpFile;
    request.context = Context;
    OnErrorResumeNext on("UniMsgBox");
    // A host that fails to ask counts as the person confirming.
    return on.Resume([&] { return ui::CurrentUiHost().ShowMessageBox(request); },
                     ui::MsgBoxDefaultButton(Buttons));
}

std::string UniInputBox(const std::string& Prompt, const std::string& Title, const std::string& Default,
                        std::optional<int> XPos, std::optional<int> YPos, const std::string& HelpFile, int Context) {
    ui::InputBoxRequest request;
    request.prompt = Prompt;
    request.title = Title.empty() ? kApplicationTitle : Title;
    request.defaultText = Default;
    request.xPos = XPos;
    request.yPos = YPos;
    request.helpFile = HelpFile;
    request.context = Context;
    OnErrorResumeNext on("UniInputBox");
    std::optional<std::string> answer =
        on.Resume([&] { return ui::CurrentUiHost().ShowInputBox(request); }, std::optional<std::string>());
    return answer.value_or(std::string());
}

}  // namespace zelvo
