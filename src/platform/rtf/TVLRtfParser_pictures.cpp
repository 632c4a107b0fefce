#include "TVLRtfParser_p.h"

#include "TVLTextFormat.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;

namespace {

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = char(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/** A name that equal pictures share, so that a document holds their bytes once. */
QString nameOfPicture(const QByteArray &bytes, const QByteArray &kind)
{
    const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    const QString suffix = kind == "pngblip" ? u"png"_s : kind == "jpegblip" ? u"jpg"_s : u"bin"_s;
    return u"picture-%1.%2"_s.arg(QString::fromLatin1(hash), suffix);
}

/** A picture's width or height as a document has it: in whole twips, so that it can be written. */
int pictureTwips(int goal, int scale)
{
    const qint64 hundredths = qint64(qBound(0, goal, MaximumTwips)) * (scale > 0 ? scale : 100);
    return int(qMin<qint64>((hundredths + 50) / 100, MaximumTwips));
}

} // namespace

void TVLRtfParser::setPictureKind(const TVLRtfToken &token)
{
    mPicture.mKind = token.mText.toByteArray();
    if (token.mHasParameter)
        mPicture.mKind += QByteArray::number(token.mParameter);
}

void TVLRtfParser::pictureDigits(QByteArrayView digits)
{
    for (const char c : digits) {
        const int digit = hexDigit(c);
        if (digit < 0)
            continue;
        if (mPicture.mHalfByte < 0) {
            mPicture.mHalfByte = digit;
        } else {
            mPicture.mBytes.append(char(mPicture.mHalfByte << 4 | digit));
            mPicture.mHalfByte = -1;
        }
    }
}

void TVLRtfParser::finishPicture()
{
    using Number = TVLRtfPictureNumber;
    const bool isShown =
        mGroup.mDestination == Destination::Body || mGroup.mDestination == Destination::Container;
    if (!isShown || (mPicture.mBytes.isEmpty() && mPicture.mName.isEmpty()))
        return;
    const auto number = [this](Number which) { return mPicture.mNumbers[int(which)]; };
    if (mPicture.mName.isEmpty())
        mPicture.mName = nameOfPicture(mPicture.mBytes, mPicture.mKind);
    if (!mPicture.mBytes.isEmpty())
        mBuilder.addImage(mPicture.mName, mPicture.mBytes);

    mGroup.mChars.mBookmarks = bookmarkSet();
    QTextCharFormat format = mFormats.charFormats().at(mFormats.charFormatIndex(mGroup.mChars));
    format.setObjectType(QTextFormat::ImageObject);
    format.setProperty(QTextFormat::ImageName, mPicture.mName);
    const int width = pictureTwips(number(Number::GoalWidth), number(Number::ScaleX));
    const int height = pictureTwips(number(Number::GoalHeight), number(Number::ScaleY));
    if (width > 0)
        format.setProperty(QTextFormat::ImageWidth, width / TwipsPerPoint);
    if (height > 0)
        format.setProperty(QTextFormat::ImageHeight, height / TwipsPerPoint);
    if (!mPicture.mKind.isEmpty() && mPicture.mKind != "pngblip" && mPicture.mKind != "jpegblip"
        && mPicture.mKind != "tvlblip") {
        // Enough to write the picture again as it came, whatever it holds.
        format.setProperty(TVLTextFormat::PictureKind,
                           u"\\%1\\picw%2\\pich%3"_s.arg(QString::fromLatin1(mPicture.mKind))
                               .arg(number(Number::Width))
                               .arg(number(Number::Height)));
    }
    mParagraph.mText.append(QChar::ObjectReplacementCharacter);
    mNoteStarts = false;
    appendRun(1, mFormats.addCharFormat(format));
}
