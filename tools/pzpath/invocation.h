#pragma once

#include "pathdata.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

class Invocation;
struct Shape;

/** One command of the tool. */
struct Command {
    /**
     * Which options the command takes, to be or-ed. WritesText is none that a user gives: text in pictures
     * needs fonts and so a GUI application.
     */
    enum Option { NoOption = 0, Output = 1, Elements = 2, Json = 4, Corpus = 8, WritesText = 16 };
    static constexpr int anyNumber = 1000000;

    const char *name;
    const char *arguments; ///< as the help shows them
    const char *help;      ///< one line
    int fewest;            ///< positional arguments
    int most;
    int options;
    void (*run)(const Invocation &);
};

QVector<Command> booleanCommands();
QVector<Command> queryCommands();
QVector<Command> effectCommands();
QVector<Command> corpusCommands();
QVector<Command> galleryCommands();
QVector<Command> arrangementCommands();

/** What the user typed, with the accessors that every command reads its arguments by. All throw ToolError. */
class Invocation
{
public:
    /** arguments: what follows the command's name. Minus signs before digits are numbers, not options. */
    Invocation(const Command &command, const QStringList &arguments);

    QString command() const { return m_command; }
    bool wantsHelp() const { return m_help; }
    const QStringList &arguments() const { return m_arguments; }
    /** A finite number; name is what the error calls it. */
    double number(int argument, const char *name) const;
    /** Path data, or a file of it after "@". */
    PathCommands path(int argument, const char *name) const;

    bool has(const char *option) const { return m_values.contains(QLatin1String(option)); }
    /** Values given for an option, in order. */
    QStringList values(const char *option) const { return m_values.value(QLatin1String(option)); }
    QString value(const char *option) const { return values(option).value(0); }
    /** The option's value as a whole number not below least; fallback when it was not given. */
    int count(const char *option, int least, int fallback) const;
    double positive(const char *option, double fallback) const;

private:
    QString m_command;
    bool m_help = false;
    QStringList m_arguments;
    QMap<QString, QStringList> m_values;
};

/** One line for each of the options in set. */
QString optionHelp(int set);
/** A line on standard output. */
void printLine(const QString &line);
/** Saves a picture where one is asked for; the text comes only after that has worked. */
void printPaths(const Invocation &in, const QVector<PathCommands> &results, const QVector<Shape> &picture);
