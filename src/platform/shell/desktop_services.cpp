#include "platform/shell/desktop_services.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zelvo::shell {

bool SpawnDetached(const std::vector<std::string>& argv, std::string* error) {
    if (argv.empty()) return false;
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);

    // The grandchild tells a failed exec through this pipe; a successful
    // exec closes it unwritten.
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) {
        if (error) *error = std::strerror(errno);
        return false;
    }
    pid_t child = fork();
    if (child < 0) {
        if (error) *error = std::strerror(errno);
        close(fds[0]);
        close(fds[1]);
        return false;
    }
    if (child == 0) {
        // The middle process exits at once, so the program is adopted by
        // init and never becomes our zombie.
        setsid();
        if (fork() == 0) {
            execvp(args[0], args.data());
            int e = errno;
            (void)!write(fds[1], &e, sizeof e);
            _exit(127);
        }
        _exit(0);
    }
    close(fds[1]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    int e = 0;
    ssize_t n;
    while ((n = read(fds[0], &e, sizeof e)) < 0 && errno == EINTR) {
    }
    close(fds[0]);
    if (n == static_cast<ssize_t>(sizeof e)) {
        if (error) *error = argv[0] + ": " + std::strerror(e);
        return false;
    }
    return true;
}

namespace {

bool XdgOpen(const std::string& target) { return SpawnDetached({"xdg-open", target}); }

}  // namespace

bool DesktopServices::OpenHelp(const std::string& manualFile, const std::string& topic) {
    // A topic is a place in the manual: "frmMain.HTM" is the anchor #frmMain.
    std::string anchor = topic.substr(0, topic.find('.'));
    return XdgOpen("file://" + manualFile + (anchor.empty() ? "" : "#" + anchor));
}

bool DesktopServices::OpenMailClient(const std::string& mailtoUrl) { return XdgOpen(mailtoUrl); }

bool DesktopServices::OpenWebPage(const std::string& page) { return XdgOpen(page); }

bool DesktopServices::ComposeLetter(const LetterRequest& letter) { return XdgOpen("mailto:" + letter.address); }

bool DesktopServices::StartLauncher(const std::string& command, const std::string& parameters) {
    return SpawnDetached({command, parameters});
}

std::string RecordingDesktopServices::Call::Field(const std::string& name) const {
    for (const auto& [n, v] : fields)
        if (n == name) return v;
    return {};
}

bool RecordingDesktopServices::Record(Call call) {
    calls_.push_back(std::move(call));
    if (onCall) onCall(calls_.back());
    return true;
}

bool RecordingDesktopServices::OpenHelp(const std::string& manualFile, const std::string& topic) {
    return Record({"help", {{"file", manualFile}, {"topic", topic}}});
}

bool RecordingDesktopServices::OpenMailClient(const std::string& mailtoUrl) {
    return Record({"mail", {{"url", mailtoUrl}}});
}

bool RecordingDesktopServices::OpenWebPage(const std::string& page) { return Record({"web", {{"page", page}}}); }

bool RecordingDesktopServices::ComposeLetter(const LetterRequest& l) {
    return Record({"letter",
                   {{"number", std::to_string(l.number)},
                    {"project", l.project},
                    {"filter", std::to_string(l.filter)},
                    {"inArchive", l.inArchive ? "True" : "False"},
                    {"text1", l.text1},
                    {"zero", std::to_string(l.zero)},
                    {"address", l.address},
                    {"text2", l.text2}}});
}

bool RecordingDesktopServices::StartLauncher(const std::string& command, const std::string& parameters) {
    return Record({"launcher", {{"command", command}, {"parameters", parameters}}});
}

namespace {

DesktopServices xdg;
DesktopServices* current = &xdg;

}  // namespace

DesktopServices& CurrentDesktopServices() { return *current; }

DesktopServices* SetDesktopServices(DesktopServices* services) {
    DesktopServices* previous = current == &xdg ? nullptr : current;
    current = services ? services : &xdg;
    return previous;
}

}  // namespace zelvo::shell
