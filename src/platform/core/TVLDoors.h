#pragma once

#include "TvlExport.h"

#include <QDateTime>
#include <QUuid>

/**
 * @file
 * What is different in each run: the time, new identities and chance. The library asks for them
 * here and nowhere else, so that a TVLReplay can give them. Any thread may call these functions.
 */

/** The present time, as local time. */
[[nodiscard]] TVL_EXPORT QDateTime tvlNow();

/** An identity that nothing else has, of version 4 (random). */
[[nodiscard]] TVL_EXPORT QUuid tvlNewUuid();

/** A number by chance, each as likely as the others. Nothing that has to stay secret is made of it.
 */
[[nodiscard]] TVL_EXPORT quint32 tvlRandom();

/** A number by chance from 0 to below @p end; 0 if that is 0. */
[[nodiscard]] TVL_EXPORT quint32 tvlRandom(quint32 end);
