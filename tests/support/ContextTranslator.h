#pragma once

#include <QCoreApplication>
#include <QTranslator>

/// While it lives, every translated text is "context|source text", which shows that a text passes
/// through translation and in which context.
class ContextTranslator final : public QTranslator
{
public:
    ContextTranslator() { QCoreApplication::installTranslator(this); }
    ~ContextTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char*, int) const override
    {
        return QString::fromUtf8(context) + QLatin1Char('|') + QString::fromUtf8(sourceText);
    }
};
