#pragma once

#include "TVL.h"

/**
 * Whether the hash of a text says that it is that of its file; of a text that needs none, whether
 * there is no file. @p checksums is a TVLProjectChecksums or what answers for it.
 */
template <typename Checksums>
[[nodiscard]] bool tvlIsVouchedFor(const Checksums &checksums, int id,
                                   TVL::DocumentProperty property, bool needsNoHash)
{
    const TVL::DocumentType type = TVL::toDocumentType(property);
    return checksums.checksumsMatch(id, type)
        && (needsNoHash || !checksums.loadedChecksum(id, type).isEmpty());
}
