#pragma once

#include <QByteArrayView>

/** One piece of an RTF file. */
struct TVLRtfToken
{
    enum Kind : quint8 {
        End, ///< Nothing is left.
        Open, ///< Opening brace.
        Close, ///< Closing brace.
        Word, ///< Control word: mText is its name.
        Symbol, ///< Control symbol: mText is its character.
        Byte, ///< A byte given by its hexadecimal digits: mText is that byte.
        Text, ///< Bytes that stand for themselves.
        Binary, ///< The raw bytes behind `\bin`.
    };

    Kind mKind = End;
    bool mHasParameter = false;
    int mParameter = 0; ///< Of a word; 0 without one. Limited to the range of an int.
    QByteArrayView mText = {}; ///< Lies in the input, but for a Byte.
};

/**
 * Cuts RTF into tokens. No byte is copied; what the tokens point to must outlive them, and the
 * byte of a Byte token lasts until the next call of next().
 */
class TVLRtfTokenizer
{
public:
    explicit TVLRtfTokenizer(QByteArrayView input);

    TVLRtfToken next();

    /** Whether `\bin` announced more bytes than the input has. */
    [[nodiscard]] bool isBinaryCutOff() const { return mBinaryCutOff; }
    [[nodiscard]] qsizetype position() const { return mPosition - mBegin; }
    /** What hasn't been read yet. */
    [[nodiscard]] QByteArrayView rest() const { return {mPosition, mEnd}; }

private:
    TVLRtfToken control();
    TVLRtfToken word();
    TVLRtfToken hexByte();
    TVLRtfToken binary(int length);
    TVLRtfToken text();
    int parameter(bool *hasParameter);
    void skipLineEnds();

    const char *mBegin;
    const char *mPosition;
    const char *mEnd;
    char mByte = 0;
    bool mBinaryCutOff = false;
};
