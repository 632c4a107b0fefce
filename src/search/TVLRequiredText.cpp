#include "TVLRequiredText_p.h"

#include <algorithm>

namespace {

bool isHexDigit(QChar character)
{
    const char16_t lower = character.unicode() | 0x20;
    return (character >= u'0' && character <= u'9') || (lower >= u'a' && lower <= u'f');
}

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/** An expression lowers a whole piece at once; with few characters that isn't lowering each. */
bool isLoweredAlone(QChar character)
{
    return !character.isSurrogate() && QString(character).toLower() == QString(character.toLower());
}

/** Reads a pattern from its start to its end and remembers the pieces that are required. */
class PatternReader
{
public:
    explicit PatternReader(const QString &pattern)
        : mPattern(pattern)
    {
    }

    [[nodiscard]] TVLRequiredText requiredText()
    {
        while (mIsUnderstood && mPosition < mPattern.size())
            readAtom();
        endPiece();
        return mIsUnderstood ? TVLRequiredText{mLongest, mStart} : TVLRequiredText();
    }

private:
    [[nodiscard]] bool atEnd() const { return mPosition >= mPattern.size(); }
    [[nodiscard]] QChar current() const { return mPattern[mPosition]; }

    void readAtom()
    {
        const QChar character = mPattern[mPosition++];
        switch (character.unicode()) {
        case u'|':
        case u')':
            mIsUnderstood = false;
            break;
        case u'^':
            endPiece();
            mIsAtStart = mPosition == 1;
            break;
        case u'.':
        case u'$':
            endPiece();
            break;
        case u'[':
            endPiece();
            skipClass();
            break;
        case u'(':
            endPiece();
            skipGroup();
            break;
        case u'\\':
            readEscape();
            break;
        default:
            if (isLoweredAlone(character))
                mPiece += character;
            else
                endPiece();
        }
        readQuantifiers();
    }

    /** What may come any number of times is required only if each of its counts is. */
    void readQuantifiers()
    {
        bool isQuantified = false;
        bool isRequired = true;
        while (mIsUnderstood && !atEnd() && QStringView(u"?*+{").contains(current())) {
            isQuantified = true;
            isRequired = isRequired && current() == u'+';
            if (current() == u'{')
                skipBehind(u'}');
            else
                ++mPosition;
        }
        if (!isQuantified)
            return;
        if (!isRequired)
            mPiece.chop(1);
        endPiece();
    }

    void readEscape()
    {
        if (atEnd()) {
            mIsUnderstood = false;
            return;
        }
        const QChar escaped = mPattern[mPosition++];
        if (escaped.unicode() < 0x80 && !escaped.isLetterOrNumber()) {
            mPiece += escaped;
            return;
        }
        // Digits may belong to a code or to a number; as many as there are mean no text for sure.
        endPiece();
        while (!atEnd() && (escaped == u'x' ? isHexDigit(current()) : isDigit(current())))
            ++mPosition;
    }

    /** Behind the bracket that ends a class, if that is certain. */
    void skipClass()
    {
        if (!atEnd() && current() == u'^')
            ++mPosition;
        const qsizetype start = mPosition;
        skipBehind(u']');
        const QStringView content = QStringView(mPattern).mid(start, mPosition - start);
        if (content.size() < 2 || content.contains(u'\\'))
            mIsUnderstood = false;
    }

    void skipGroup()
    {
        int depth = 1;
        while (mIsUnderstood && depth > 0) {
            if (atEnd()) {
                mIsUnderstood = false;
                return;
            }
            const QChar character = mPattern[mPosition++];
            if (character == u'(')
                ++depth;
            else if (character == u')')
                --depth;
            else if (character == u'[')
                skipClass();
            else if (character == u'\\')
                ++mPosition;
        }
    }

    void skipBehind(QChar character)
    {
        const qsizetype found = mPattern.indexOf(character, mPosition);
        if (found < 0)
            mIsUnderstood = false;
        else
            mPosition = found + 1;
    }

    void endPiece()
    {
        if (mIsAtStart)
            mStart = mPiece;
        mIsAtStart = false;
        if (mPiece.size() > mLongest.size())
            mLongest = mPiece;
        mPiece.clear();
    }

    const QString &mPattern;
    qsizetype mPosition = 0;
    bool mIsUnderstood = true;
    bool mIsAtStart = false; ///< Whether the piece follows the caret that the pattern begins with.
    QString mPiece;
    QString mLongest;
    QString mStart;
};

} // namespace

TVLRequiredText tvlRequiredText(const QString &pattern)
{
    return PatternReader(pattern).requiredText();
}
