#include "platform/ui/terminal_host.h"

#include <unistd.h>

#include <cctype>
#include <istream>
#include <ostream>

namespace zelvo::ui {

namespace {

const char* IconWord(int style) {
    switch (style & 0x70) {
        case vbCritical: return "error";
        case vbQuestion: return "question";
        case vbExclamation: return "warning";
        case vbInformation: return "note";
        default: return "message";
    }
}

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

}  // namespace

TerminalUiHost::TerminalUiHost(std::istream& in, std::ostream& out, bool interactive, std::deque<std::string> answers)
    : in_(in), out_(out), interactive_(interactive), answers_(std::move(answers)) {}

bool TerminalUiHost::StdioIsTerminal() { return isatty(STDIN_FILENO) && isatty(STDERR_FILENO); }

std::optional<std::string> TerminalUiHost::ReadLine() {
    std::string line;
    if (!std::getline(in_, line)) return std::nullopt;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

int TerminalUiHost::ShowMessageBox(const MessageBoxRequest& request) {
    out_ << "zelvo " << IconWord(request.buttons) << (request.title.empty() ? "" : " (" + request.title + ")")
         << ": " << request.prompt << "\n";
    std::vector<int> buttons = MsgBoxButtons(request.buttons);
    int fallback = MsgBoxDefaultButton(request.buttons);
    if (buttons.size() == 1 || !interactive_) {
        if (buttons.size() > 1) out_ << "  (answered " << MsgBoxButtonName(fallback) << ")\n";
        out_.flush();
        return fallback;
    }
    for (;;) {
        out_ << " ";
        for (int b : buttons) out_ << " [" << MsgBoxButtonName(b) << "]";
        out_ << " (Enter: " << MsgBoxButtonName(fallback) << ")? ";
        out_.flush();
        auto line = ReadLine();
        if (!line) return buttons.back() == vbCancel ? vbCancel : fallback;
        std::string word = Lower(*line);
        if (word.empty()) return fallback;
        for (int b : buttons)
            if (Lower(MsgBoxButtonName(b)).rfind(word, 0) == 0) return b;
    }
}

std::optional<std::string> TerminalUiHost::ShowInputBox(const InputBoxRequest& request) {
    if (!answers_.empty()) {
        std::string answer = std::move(answers_.front());
        answers_.pop_front();
        return answer;
    }
    if (!interactive_) {
        out_ << "zelvo prompt" << (request.title.empty() ? "" : " (" + request.title + ")") << ": "
             << request.prompt << "\n  (no --answer left and no terminal: cancelled)\n";
        out_.flush();
        return std::nullopt;
    }
    out_ << (request.title.empty() ? "" : request.title + ": ") << request.prompt;
    if (!request.defaultText.empty()) out_ << " [" << request.defaultText << "]";
    out_ << "\n(Enter keeps the text in brackets; end of input cancels) > ";
    out_.flush();
    auto line = ReadLine();
    if (!line) return std::nullopt;
    return line->empty() ? request.defaultText : *line;
}

std::string TerminalUiHost::AskPath(const char* what, const FileDialogRequest& request) {
    if (!interactive_) return {};
    out_ << what << (request.title.empty() ? "" : " (" + request.title + ")");
    if (!request.fileName.empty()) out_ << " [" << request.fileName << "]";
    out_ << "\n(end of input cancels) > ";
    out_.flush();
    auto line = ReadLine();
    if (!line) return {};
    return line->empty() ? request.fileName : *line;
}

std::string TerminalUiHost::ShowOpenDialog(const FileDialogRequest& request) {
    return AskPath("File to open", request);
}

std::string TerminalUiHost::ShowSaveDialog(const FileDialogRequest& request) {
    return AskPath("File to save", request);
}

}  // namespace zelvo::ui
