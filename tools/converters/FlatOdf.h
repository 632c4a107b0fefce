#pragma once

#include <QByteArray>

/**
 * The content of an OpenDocument text as one file that an office opens by itself. Empty if the
 * content isn't sound XML.
 */
[[nodiscard]] QByteArray flatOdf(const QByteArray &content);
