// What the library asks of the desktop besides asking the person: show the
// manual, hand an address to the mail client or a letter to the host's mail
// module, show a web page, start the launcher. One interface, so that a host
// can put its own in place (a desktop host with a mail module of its own, a
// test that records, `zelvo ui` that prints each call).
//
// The desktop's own programs are started through `xdg-open`, the freedesktop
// way to open a file or address in the program the person chose for it; the
// library never waits for them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zelvo::shell {

// The arguments of the host's letter window, in the order the library gives
// them: a number only the mail module reads, the project, the filter (2),
// whether the project is in the archive, an empty text, 0, the address and
// another empty text.
struct LetterRequest {
    std::int32_t number = 0;
    std::string project;
    std::int32_t filter = 2;
    bool inArchive = false;
    std::string text1;
    std::int32_t zero = 0;
    std::string address;
    std::string text2;
};

class DesktopServices {
public:
    virtual ~DesktopServices() = default;

    // Shows the manual `manualFile` (an HTML file) at `topic` in the web
    // browser. False when no browser could be started.
    virtual bool OpenHelp(const std::string& manualFile, const std::string& topic);
    // Opens the mail client on `mailtoUrl` ("mailto:ivan@example.org").
    virtual bool OpenMailClient(const std::string& mailtoUrl);
    // Opens `page` in the web browser.
    virtual bool OpenWebPage(const std::string& page);
    // Opens a letter window of the host's mail module. The desktop has no
    // mail module of its own, so this base hands the address to the mail
    // client instead.
    virtual bool ComposeLetter(const LetterRequest& letter);
    // Starts the launcher `command` with `parameters` as its one argument.
    virtual bool StartLauncher(const std::string& command, const std::string& parameters);
};

// Starts `argv` (argv[0] found on PATH) as a process of its own that the
// caller neither waits for nor reaps. False, with the reason in `error`,
// when it could not be started.
bool SpawnDetached(const std::vector<std::string>& argv, std::string* error = nullptr);

// A DesktopServices that starts nothing and records each call: the action
// ("help", "mail", "web", "letter", "launcher") and its fields in order.
// `onCall` (optional) is told of each call as it is made.
class RecordingDesktopServices : public DesktopServices {
public:
    struct Call {
        std::string action;
        std::vector<std::pair<std::string, std::string>> fields;
        // The field of `name`, "" when there is none.
        std::string Field(const std::string& name) const;
    };
    std::function<void(const Call&)> onCall;
    const std::vector<Call>& Calls() const { return calls_; }

    bool OpenHelp(const std::string& manualFile, const std::string& topic) override;
    bool OpenMailClient(const std::string& mailtoUrl) override;
    bool OpenWebPage(const std::string& page) override;
    bool ComposeLetter(const LetterRequest& letter) override;
    bool StartLauncher(const std::string& command, const std::string& parameters) override;

private:
    bool Record(Call call);
    std::vector<Call> calls_;
};

// The services of this process: the xdg-open ones until a host installs
// others.
DesktopServices& CurrentDesktopServices();
// Installs `services` (not owned; nullptr restores the xdg-open ones).
// Returns the previous one.
DesktopServices* SetDesktopServices(DesktopServices* services);

}  // namespace zelvo::shell
