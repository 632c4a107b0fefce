#pragma once

#include "TvlExport.h"

#include <QString>
#include <QUuid>

/** Texts of uuids. */
class TVL_EXPORT TUuid
{
public:
    /**
     * A uuid as 36 characters without braces, its hexadecimal digits in upper or lower case.
     * QUuid reads both forms. Cheap enough to be called for every item of a file.
     */
    [[nodiscard]] static QString toStringNoBraces(const QUuid &uuid, bool upperCase);

    /**
     * A text that is a uuid as a whole, with braces or without, in upper or lower case; null for
     * any other. QUuid takes whatever begins like one, such as the name of a copy.
     */
    [[nodiscard]] static QUuid fromWholeText(QStringView text);
};
