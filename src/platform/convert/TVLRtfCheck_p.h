#pragma once

#include <QtGlobal>

class QString;

/**
 * Whether a file of rich text can be read without harm, as the program `rtfi` beside the
 * application finds; the caller's user is asked where it finds errors. See
 * TVLTextTransform::isRtfSafeToLoad().
 */
[[nodiscard]] bool tvlIsRtfSafeToLoad(const QString &path, bool remember);

/**
 * Keeps checks from showing boxes while it lives, for work that no event loop may run in: a text
 * with errors isn't safe then, unless the user has said otherwise before, and isn't remembered.
 */
class TVLSilentRtfCheck
{
public:
    TVLSilentRtfCheck();
    ~TVLSilentRtfCheck();
    Q_DISABLE_COPY_MOVE(TVLSilentRtfCheck)
};
