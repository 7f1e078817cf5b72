// The registry of the public classes: the one place that lists them. A new
// public class joins by declaring the function that gives its descriptor and
// adding it to the list (see src/automation/dispatch_table.h).
#include "zelvo/dispatch.h"

namespace zelvo {

std::span<const DispClass* const> PublicClasses() {
    static const std::vector<const DispClass*> classes = {
        &cAddressbookClass(),
    };
    return classes;
}

}  // namespace zelvo
