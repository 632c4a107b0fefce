#pragma once

#include "TVL.h"

#include <QString>

#include <array>
#include <functional>

class QIODevice;
class QXmlStreamWriter;

/** The texts of an item that `search.indexes` has, each empty if it has none. */
class TVLFiledTexts
{
public:
    [[nodiscard]] const QString &at(TVL::DocumentProperty property) const
    {
        return mTexts.at(std::size_t(property));
    }
    QString &operator[](TVL::DocumentProperty property) { return mTexts.at(std::size_t(property)); }

private:
    std::array<QString, std::size_t(TVL::CommentsProperty) + 1> mTexts;
};

/** The form of `search.indexes`: which elements it has, and in what order. */
namespace TVLSearchFile {

/** Takes an item of the file, with its texts but for the title, which is the binder's. */
using TakeDocument = std::function<void(int id, const TVLFiledTexts &texts)>;

/**
 * Reads all items. Empty, or why the file can't be read to its end; what was taken until then is
 * not to be relied on.
 */
[[nodiscard]] QString read(QIODevice *device, const TakeDocument &take);

void writeStart(QXmlStreamWriter *writer);
void writeDocument(QXmlStreamWriter *writer, int id, const TVLFiledTexts &texts);
void writeEnd(QXmlStreamWriter *writer);

} // namespace TVLSearchFile
