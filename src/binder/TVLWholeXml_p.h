#pragma once

class QIODevice;

/**
 * Whether what the device, which must be open, holds from its position on is one whole XML document
 * and not cut off. Entities of its own make it none.
 */
[[nodiscard]] bool tvlIsWholeXml(QIODevice *device);
