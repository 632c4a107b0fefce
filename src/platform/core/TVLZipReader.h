#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/**
 * Reads the files in a zip, and trusts none of it: what doesn't agree with its checksum and its
 * stated sizes isn't returned, and no claim of a damaged or hostile archive makes it allocate more
 * than deflate could have packed into it.
 */
class TVL_EXPORT TVLZipReader
{
public:
    /** Opens an archive; isOpen() tells whether it is one. */
    explicit TVLZipReader(const QString &filePath);
    ~TVLZipReader();
    Q_DISABLE_COPY_MOVE(TVLZipReader)

    [[nodiscard]] bool isOpen() const;

    /** Number of entries, folders among them. */
    [[nodiscard]] int count() const;

    /** Place of the first entry of that name; -1 for none. */
    [[nodiscard]] int indexOf(const QString &name) const;

    /** The content of an entry; nothing when there is none, or when it is damaged. */
    [[nodiscard]] std::optional<QByteArray> content(int index) const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
