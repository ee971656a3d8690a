#include "pzpath.h"

#include <QStringList>

namespace {

/** The command letter that token starts with; a null character for any other token. */
QChar commandOf(const QString &token)
{
    for (const char letter : { 'M', 'L', 'C', 'Z' }) {
        if (token.startsWith(QLatin1Char(letter)))
            return QLatin1Char(letter);
    }
    return QChar();
}

/** Numbers and pairs by position; what is missing or is no number reads as 0. */
class Tokens
{
public:
    explicit Tokens(const QString &data) : m_list(data.split(QLatin1Char(' '))) {}

    int count() const { return m_list.count(); }
    QChar command(int i) const { return commandOf(m_list.at(i)); }
    /** Drops the command letter from a token that a number is read from next. */
    void strip(int i, QChar letter)
    {
        if (i < m_list.count())
            m_list[i].remove(letter);
    }
    double number(int i) const { return m_list.value(i).toDouble(); }
    /** Two tokens, a number each. */
    QPointF point(int i) const { return QPointF(number(i), number(i + 1)); }
    /** One token, a pair joined by a comma. */
    QPointF pair(int i) const
    {
        const QStringList parts = m_list.value(i).split(QLatin1Char(','));
        return QPointF(parts.value(0).toDouble(), parts.value(1).toDouble());
    }

private:
    QStringList m_list;
};

} // namespace

void PZPath::pzpathFromSvgPath(const QString &data)
{
    Tokens tokens(data);
    for (int i = 0; i < tokens.count();) {
        const QChar command = tokens.command(i);
        tokens.strip(i, command);
        if (command == QLatin1Char('M'))
            moveTo(tokens.pair(i));
        else if (command == QLatin1Char('L'))
            lineTo(tokens.pair(i));
        else if (command == QLatin1Char('C'))
            cubicTo(tokens.pair(i), tokens.pair(i + 1), tokens.pair(i + 2));
        else if (command == QLatin1Char('Z'))
            closeSubpath();
        i += command == QLatin1Char('C') ? 3 : 1;
    }
}

void PZPath::pzpathFromSvgPath2(const QString &data)
{
    Tokens tokens(data);
    for (int i = 0; i < tokens.count();) {
        const QChar command = tokens.command(i);
        const bool hasNumbers = !command.isNull() && command != QLatin1Char('Z');
        if (hasNumbers)
            tokens.strip(i + 1, command);
        if (command == QLatin1Char('M')) {
            moveTo(tokens.point(i + 1));
            i += 3;
        } else if (command == QLatin1Char('L')) {
            lineTo(tokens.point(i + 1));
            i += 3;
        } else if (command == QLatin1Char('C')) {
            cubicTo(tokens.point(i + 1), tokens.point(i + 3), tokens.point(i + 5));
            i += 7;
        } else {
            if (command == QLatin1Char('Z'))
                closeSubpath();
            ++i;
        }
    }
}
