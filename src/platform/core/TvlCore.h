#pragma once

#include "TvlExport.h"

#include <QString>

/** What the operating system knows of the person at the computer. */
namespace TvlCore {

/**
 * The login name from the environment: the first of `USER`, `LOGNAME` and `USERNAME` that isn't
 * empty; empty when none is set.
 */
[[nodiscard]] TVL_EXPORT QString systemUsernameEnv();

/**
 * The user's full name from the account database, or systemUsernameEnv() where the database has
 * none.
 */
[[nodiscard]] TVL_EXPORT QString systemUsername();

} // namespace TvlCore
