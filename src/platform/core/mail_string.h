// ValueConv's two helpers for a mail string: the display name and the
// address of one sender or recipient, as people paste them from a mail
// program's header, a web page or a signature.
//
// What is read, and how the uncertain cases come out (the choices a mail
// program makes when it reads an address field):
//
//   Ivan Petrov <ivan@example.org>       name "Ivan Petrov", address ivan@example.org
//   "Petrov, Ivan" <ivan@example.org>    quotes removed, backslash escapes inside
//                                        them resolved: name "Petrov, Ivan"
//   Petrov, Ivan <ivan@example.org>      an unquoted comma before the first
//                                        address belongs to the name
//   ivan@example.org                     name "", address ivan@example.org
//   <ivan@example.org>                   name "", address ivan@example.org
//   ivan@example.org (Ivan Petrov)       a comment is the name when no other
//                                        name is given; otherwise it is dropped
//   =?UTF-8?B?0JjQstCw0L0=?= <i@x.org>   RFC 2047 encoded words (B and Q, any
//                                        charset ICU knows, e.g. windows-1251,
//                                        KOI8-R) are decoded, inside quotes too;
//                                        blanks between two encoded words go
//   a@x.org, b@x.org                     two addresses: the first is taken
//   Ivan Petrov                          no "@": a name only, the address is ""
//   Ivan <ivan>                          a bracketed text without "@" is no
//                                        address: name "Ivan", address ""
//   <ivan>                               ... and becomes the name when there is
//                                        no other: name "ivan"
//   mailto:ivan@example.org              the "mailto:" of a link is dropped
//
// Line breaks and tabs read as blanks (a folded header); other control
// characters are dropped. Runs of blanks in a name become one. An opening
// quote or parenthesis that is never closed is dropped and the rest read as
// if it were not there, so that it cannot swallow the address behind it; an
// angle bracket that is never closed runs to the end of the text.
// An encoded word that is malformed or names a charset ICU does not know is
// kept as it stands. The text may be of any length: nothing is cut here, so
// a caller that stores the parts checks them against its columns.
//
// Both parts may be empty (a text of blanks, or of punctuation only).
#pragma once

#include <string>

namespace zelvo::ValueConv {

// The display name of `Mail`, decoded to UTF-8; "" when it has none.
std::string MailNamePart(const std::string& Mail);

// The address of `Mail`, without brackets, blanks or comments; "" when the
// text holds no address (no "@").
std::string MailAddressPart(const std::string& Mail);

}  // namespace zelvo::ValueConv
