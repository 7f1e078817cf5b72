// The only roads to a message and to a text prompt: every message box and
// input box of the library goes through these two, and they go to the
// UiHost of the process (the desktop, the terminal, or a test's script).
#pragma once

#include <optional>
#include <string>

namespace zelvo {

// The title of a message or a prompt that is given none.
inline constexpr const char* kApplicationTitle = "Zelvo";

// Shows `Prompt` with the buttons and icon of `Buttons` (a MsgBoxStyle sum:
// 16 critical, 48 warning, 64 information, 4 Yes/No …) and returns the
// button pressed (1 OK, 2 Cancel, 6 Yes, 7 No …). An empty Title shows the
// application's title.
int UniMsgBox(const std::string& Prompt, int Buttons = 0, const std::string& Title = {},
              const std::string& HelpFile = {}, int Context = 0);

// Asks for a text, the field starting with `Default`. Returns the text
// confirmed, or "" when the person cancelled; callers that must tell a
// cancel from an empty answer cannot, and test the trimmed text. An empty
// Title shows the application's title. XPos and YPos place the box (twips);
// none centres it.
std::string UniInputBox(const std::string& Prompt, const std::string& Title = {}, const std::string& Default = {},
                        std::optional<int> XPos = std::nullopt, std::optional<int> YPos = std::nullopt,
                        const std::string& HelpFile = {}, int Context = 0);

}  // namespace zelvo
