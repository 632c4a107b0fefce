#pragma once

#include "TvlExport.h"

#include <QChar>
#include <QString>
#include <QStringView>

/**
 * The forms that the quotation marks of a keyboard take in typeset text: curly, low, reversed,
 * angled, wide or ornamental, whatever a language's typography makes of them.
 */
class TVL_EXPORT TVLQuote
{
public:
    /** The apostrophe of a keyboard. */
    [[nodiscard]] static constexpr QChar asciiSingleQuote() { return u'\''; }
    /** The double quote of a keyboard. */
    [[nodiscard]] static constexpr QChar asciiDoubleQuote() { return u'"'; }

    /** Every form of the single quote and of the apostrophe, the plain one first. */
    [[nodiscard]] static QStringView singleQuotes();
    /** Every form of the double quote, the plain one first. */
    [[nodiscard]] static QStringView doubleQuotes();

    /** Part of a QRegExp that matches one character, any of singleQuotes(). It captures nothing. */
    [[nodiscard]] static QString singleQuotesSearchPattern();
    /** Part of a QRegExp that matches one character, any of doubleQuotes(). It captures nothing. */
    [[nodiscard]] static QString doubleQuotesSearchPattern();
};
