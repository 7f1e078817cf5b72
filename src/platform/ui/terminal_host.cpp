#include "platform/ui/terminal_host.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <istream>
#include <ostream>

#include "platform/shell/project_paths.h"

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

// The project folders under `root`, as project paths, in the order of a
// tree. Hidden folders (the archive and the settings live in the live root
// as such) are no projects. A huge tree is cut short rather than flooding
// the terminal.
std::vector<std::string> ProjectTree(const std::string& root) {
    namespace fs = std::filesystem;
    constexpr int kMaxDepth = 8;
    constexpr size_t kMaxFolders = 500;
    std::vector<std::string> paths;
    std::error_code ec;
    fs::recursive_directory_iterator it(root, fs::directory_options::skip_permission_denied, ec), end;
    for (; !ec && it != end && paths.size() < kMaxFolders; it.increment(ec)) {
        std::string name = it->path().filename().string();
        if (!it->is_directory(ec) || name.empty() || name[0] == '.' || it.depth() >= kMaxDepth) {
            if (it->is_directory(ec)) it.disable_recursion_pending();
            continue;
        }
        paths.push_back(shell::ProjectPathUnderRoot(root, it->path().string()));
    }
    // "A" before "A\B" before "AB": the tree's order, not the bytes'.
    std::sort(paths.begin(), paths.end(), [](const std::string& a, const std::string& b) {
        std::string x = a, y = b;
        std::replace(x.begin(), x.end(), '\\', '\x01');
        std::replace(y.begin(), y.end(), '\\', '\x01');
        return x < y;
    });
    return paths;
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

std::optional<ProjectPickerAnswer> TerminalUiHost::ShowProjectPicker(const ProjectPickerRequest& request) {
    std::string path;
    if (!answers_.empty()) {
        path = std::move(answers_.front());
        answers_.pop_front();
    } else if (!interactive_) {
        out_ << "zelvo project picker" << (request.title.empty() ? "" : " (" + request.title + ")")
             << ": no --answer left and no terminal: cancelled\n";
        out_.flush();
        return std::nullopt;
    } else {
        std::vector<std::string> tree = ProjectTree(request.rootFolder);
        out_ << (request.title.empty() ? "Choose a project" : request.title) << " (folders under "
             << request.rootFolder << "):\n";
        for (size_t i = 0; i < tree.size(); ++i) {
            size_t depth = static_cast<size_t>(std::count(tree[i].begin(), tree[i].end(), '\\'));
            size_t leaf = tree[i].rfind('\\');
            out_ << "  " << (i + 1) << "  " << std::string(2 * depth, ' ')
                 << (leaf == std::string::npos ? tree[i] : tree[i].substr(leaf + 1)) << "\n";
        }
        if (tree.empty()) out_ << "  (no project folders yet)\n";
        out_ << "Number or project path (A\\B)" << (request.path.empty() ? "" : " [" + request.path + "]")
             << "\n(Enter keeps the path in brackets; end of input cancels) > ";
        out_.flush();
        auto line = ReadLine();
        if (!line) return std::nullopt;
        path = line->empty() ? request.path : *line;
        bool number = !path.empty() && std::all_of(path.begin(), path.end(), [](unsigned char c) {
            return std::isdigit(c);
        });
        if (number && path.size() < 6) {
            size_t n = std::stoul(path);
            if (n >= 1 && n <= tree.size()) path = tree[n - 1];
        }
    }
    while (!path.empty() && path.back() == '\\') path.pop_back();
    if (path.empty()) return std::nullopt;
    return ProjectPickerAnswer{path, shell::FolderUnderRoot(request.rootFolder, path)};
}

}  // namespace zelvo::ui
