// The value encodings of vCard: base64, quoted-printable, backslash escapes,
// and UTF-8 checks. Each decoder appends to an output string the caller
// reuses, so reading a file does not allocate per property.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::vcard {

// Decodes base64, skipping blanks and line breaks (folded and indented data
// as mail programs write it) and tolerating missing '=' padding. Returns
// false on a character outside the alphabet or a dangling single character;
// `out` then holds what was decoded before the fault.
bool DecodeBase64(std::string_view in, std::string& out);

// Encodes `in` as base64 with padding, no line breaks.
void EncodeBase64(std::string_view in, std::string& out);

// Decodes quoted-printable: "=XX" becomes the byte, "=" before a line break
// (a soft break) vanishes. A '=' not followed by two hex digits is kept as it
// stands — older phones write a bare '=' — and counts as a fault in the
// return value (false), which the reader reports without losing the text.
bool DecodeQuotedPrintable(std::string_view in, std::string& out);

// True when `s` is well-formed UTF-8 (no overlongs, no surrogates).
bool IsValidUtf8(std::string_view s);

// Appends `s` with vCard escapes resolved: "\\n"/"\\N" is a line break,
// "\\," "\\;" "\\:" "\\\\" are the character itself; a backslash before
// anything else is kept as it stands. CRLF and a lone CR become LF, so
// text in memory has one kind of line break.
void AppendUnescaped(std::string_view s, std::string& out);

// Appends `s` with the escapes a 3.0 text value needs: backslash, comma,
// semicolon and line breaks (CRLF, CR or LF become "\\n").
void AppendEscaped(std::string_view s, std::string& out);

}  // namespace zelvo::vcard
