// The suggestions of the card's "display as" box, built from the name
// parts. The person picks one or types anything; the box's text is what
// FullName holds, so nothing here is ever written on its own.
#pragma once

#include <string>
#include <vector>

namespace zelvo {

// The suggestions for last name `F`, name `N`, patronymic `P`, the box's
// `current` text and the organization `org`, in order:
//   1  F N P            (each part with a blank after it; trimmed)
//   2  N P F            (alike)
//   3  F n. p.          (n, p the first characters of N and P; trimmed)
//   4  n. p. F          (not trimmed)
//   5  org              (as it stands, when it is not blank)
//   6  current          (as it stands, when neither it nor it trimmed
//                        equals one of the above)
// Empty entries are left out, so the list has at most six texts; two equal
// suggestions both stand. Only blanks count as blanks for the trimming.
std::vector<std::string> FillDisplayAs(const std::string& F, const std::string& N, const std::string& P,
                                       const std::string& current, const std::string& org);

}  // namespace zelvo
