#pragma once

#include "TVLScreenplay_p.h"
#include "TVLScriptElement.h"

#include <QList>

#include <array>

/** Which of a script's elements a paragraph has, and which it gets. */
class TVLScriptElementFinder
{
public:
    /** With no elements those of a screenplay serve. */
    explicit TVLScriptElementFinder(const QList<TVLScriptElement> &elements);

    struct Choice
    {
        int mElement;
        bool mIsExact; ///< Whether the element alone says what the paragraph is.
    };

    [[nodiscard]] const QList<TVLScriptElement> &elements() const { return mElements; }
    /** The element for a kind, or for a name if the kind is Other. */
    [[nodiscard]] Choice elementFor(TVLScreenplayKind kind, QStringView name) const;
    /** What paragraphs of an element are; Other when only its name says so. */
    [[nodiscard]] TVLScreenplayKind kindOf(int element) const;
    /**
     * The element of a paragraph: the one that it names, or else the one that it looks like; -1
     * for none.
     */
    [[nodiscard]] int elementOf(const QTextBlockFormat &block, const QTextCharFormat &text) const;

private:
    static constexpr int None = -1;

    [[nodiscard]] int elementNamed(QStringView name) const;
    [[nodiscard]] int firstOf(std::initializer_list<TVLScreenplayKind> kinds) const;

    QList<TVLScriptElement> mElements;
    std::array<int, ScreenplayKindCount> mElementOfKind; ///< By kind; None for no such element.
};
