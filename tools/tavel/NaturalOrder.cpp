#include "NaturalOrder.h"

#include <QString>

namespace {

bool isDigit(QChar ch)
{
    return ch >= u'0' && ch <= u'9';
}

/** Takes the digits off the front of a text and gives them without zeros at their front. */
QStringView takeNumber(QStringView *text)
{
    qsizetype begin = 0;
    while (begin < text->size() && text->at(begin) == u'0')
        ++begin;
    qsizetype end = begin;
    while (end < text->size() && isDigit(text->at(end)))
        ++end;
    const QStringView number = text->sliced(begin, end - begin);
    *text = text->sliced(end);
    return number;
}

/** How two numbers of any length compare: below 0, 0 or above 0. */
qsizetype compareNumbers(QStringView left, QStringView right)
{
    return left.size() != right.size() ? left.size() - right.size() : left.compare(right);
}

/** How two names compare: below 0, 0 or above 0. Equal numbers in them may be written in several
 * ways. */
qsizetype compareNaturally(QStringView left, QStringView right)
{
    while (!left.isEmpty() && !right.isEmpty()) {
        qsizetype order = 0;
        if (isDigit(left.front()) && isDigit(right.front())) {
            order = compareNumbers(takeNumber(&left), takeNumber(&right));
        } else {
            order = qsizetype(left.front().toCaseFolded().unicode())
                - qsizetype(right.front().toCaseFolded().unicode());
            left = left.sliced(1);
            right = right.sliced(1);
        }
        if (order != 0)
            return order;
    }
    return left.size() - right.size();
}

} // namespace

bool naturalLessThan(QStringView left, QStringView right)
{
    const qsizetype order = compareNaturally(left, right);
    return order != 0 ? order < 0 : left < right;
}
