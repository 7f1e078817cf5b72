// Photos in the person lists: the photo mode of LvwAddPersons2 reads each
// person's photo through the photo records. The persons list sits below the
// photos in the library, so it asks through a hook; a host that shows lists
// with photos calls this once at start.
#pragma once

namespace zelvo {

// Installs dbPhoto's LoadPersonPhoto as the persons list's photo loader.
void InstallPersonListPhotos();

}  // namespace zelvo
