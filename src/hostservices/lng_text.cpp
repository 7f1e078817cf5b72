#include "hostservices/lng_text.h"

#include "platform/shell/lng_res.h"

namespace zelvo {

// The component is made anew for each text, as the shell expects of its
// callers; it keeps its catalogue across instances, so this costs a lookup.
std::string LngText(const std::string& Section, const std::string& Key, const std::string& Default) {
    shell::LngRes res;
    return res.GetMUIString("zelvo.dll", Section, Key, Default);
}

std::string LngHelpFile() {
    shell::LngRes res;
    return res.GetHelpFile("zelvo.chm");
}

}  // namespace zelvo
