#include "TvlMedia.h"

#include "TVLFormat.h"

QStringList TvlMedia::displayMediaFormats()
{
    static const QStringList extensions = [] {
        QStringList list;
        for (int index = 0; index < TVLFormat::formatsCount(); ++index) {
            if (TVLFormat::kind(TVLFormat::formatAt(index)) == TVLFormat::MediaKind)
                list.append(TVLFormat::formatExtension(index));
        }
        return list;
    }();
    return extensions;
}
