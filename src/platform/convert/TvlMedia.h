#pragma once

#include "TvlExport.h"

#include <QStringList>

/** What is heard and watched. */
namespace TvlMedia {

/** The extensions, in lower case and without a dot, of sound and film that is played, whether or
 * not this machine can play all of it. */
[[nodiscard]] TVL_EXPORT QStringList displayMediaFormats();

} // namespace TvlMedia
