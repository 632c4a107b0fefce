#include "TVLSearchedProject.h"

TVLSearchedProject::TVLSearchedProject() = default;
TVLSearchedProject::~TVLSearchedProject() = default;

QList<TVLSearchedText>
TVLSearchedProject::searchedFileTexts(const QModelIndex &index,
                                      const QList<TVL::DocumentProperty> &properties) const
{
    QList<TVLSearchedText> texts;
    const QStringList plainTexts = searchedTexts(index, properties);
    for (const QString &text : plainTexts)
        texts.append({text, false});
    return texts;
}
