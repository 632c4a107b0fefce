#pragma once

class QString;

/**
 * Whether a file of rich text can be read without harm, as the program `rtfi` beside the
 * application finds; the caller's user is asked where it finds errors. See
 * TVLTextTransform::isRtfSafeToLoad().
 */
[[nodiscard]] bool tvlIsRtfSafeToLoad(const QString &path, bool remember);
