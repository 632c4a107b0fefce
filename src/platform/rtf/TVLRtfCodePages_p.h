#pragma once

#include <QByteArray>
#include <QString>

#include <array>

class QTextCodec;

/**
 * Decodes the bytes of one code page. Bytes of a character that takes several may come one by one,
 * because RTF may write one half of it in hexadecimal and the other as it is.
 */
class TVLRtfCodePage
{
public:
    /** Shared by all readers; an unknown number gives the page of Western Europe. */
    static const TVLRtfCodePage *page(int number);
    /** The page of a font's character set; null for the default set, which is the document's. */
    static const TVLRtfCodePage *pageOfCharset(int charset);

    /** Whether each byte is a character of its own. */
    [[nodiscard]] bool isSingleByte() const
    {
        return mKind != Kind::DoubleByte && mKind != Kind::Utf8;
    }
    /** Whether it belongs to a font whose characters are no letters. */
    [[nodiscard]] bool isSymbol() const { return mKind == Kind::Symbol; }
    /** What stands in Unicode for a byte of such a font. */
    [[nodiscard]] static QChar symbol(char byte)
    {
        return QChar(char16_t(0xf000 + static_cast<unsigned char>(byte)));
    }
    /** The character of a byte in a single-byte page. */
    [[nodiscard]] char16_t character(char byte) const
    {
        return mCharacters[static_cast<unsigned char>(byte)];
    }
    /**
     * Adds a byte to those that wait in @p pending; gives the text once they make a character. A
     * byte that can't go on what waits gives what waits as it is.
     */
    [[nodiscard]] QString decode(QByteArray *pending, char byte) const;
    /** The text of bytes that wait in vain for the rest of their character. */
    [[nodiscard]] QString flush(QByteArray *pending) const;

private:
    enum class Kind { SingleByte, Symbol, DoubleByte, Utf8 };

    TVLRtfCodePage(int number, QTextCodec *codec);
    [[nodiscard]] int lengthByLead(unsigned char lead) const;
    [[nodiscard]] QString decodeWhole(const QByteArray &bytes) const;

    Kind mKind;
    int mNumber;
    QTextCodec *mCodec; ///< Owned by Qt.
    std::array<char16_t, 256> mCharacters{};
};
