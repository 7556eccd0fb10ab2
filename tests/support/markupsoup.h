#pragma once

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>

/// Makes small random files that are nearly XML: the seed decides, and mutations keep most of them readable a long way.
class MarkupSoup
{
public:
    explicit MarkupSoup(quint32 seed)
        : m_oRandom(seed)
    {
    }

    QByteArray Make()
    {
        QByteArray text =
            Maybe(4) ? Pick({ "<?xml version='1.0'?>", "<!-- <x> -->", "<?p <x> ?>", " ", "\xef\xbb\xbf" }) : "";
        for (int count = Maybe(2) ? 1 + (Maybe(8) ? 1 : 0) : 0; count > 0; --count) {
            text += Doctype();
        }
        text += Element(0) + (Maybe(4) ? Pick({ "<!-- --->", "<?x?>", "\n", "x", "<b/>", "\xef\xbf\xbf" }) : "");
        for (int count = Maybe(3) ? m_oRandom.bounded(3) : 0; count > 0; --count) {
            Mutate(text);
        }
        return text;
    }

private:
    bool Maybe(int oneOf) { return m_oRandom.bounded(oneOf) == 0; }
    QByteArray Pick(const QList<QByteArray> &choices) { return choices.at(m_oRandom.bounded(choices.size())); }
    QByteArray Name() { return Pick({ "a", "b", "c", "p:d", "amp", "lt" }); }
    QByteArray Blank() { return Maybe(8) ? Pick({ "\n", "\t", "  ", "" }) : " "; }

    QByteArray Piece()
    {
        return Pick({ "<",
                      ">",
                      "/",
                      "/>",
                      "</",
                      "&",
                      ";",
                      "&a;",
                      "&b;",
                      "&c;",
                      "%",
                      "%a;",
                      "%b;",
                      "\"",
                      "'",
                      "<!--",
                      "-->",
                      "-",
                      "<![CDATA[",
                      "]]>",
                      "]",
                      "[",
                      "<?p ",
                      "?>",
                      "<b>",
                      "</b>",
                      "<b/>",
                      "<!DOCTYPE a [",
                      "]>",
                      "(",
                      ")",
                      "|",
                      "<!ENTITY a 'x'>",
                      "<!ENTITY",
                      "=",
                      "xmlns:q='u'",
                      "&#60;",
                      "&#38;",
                      "&lt;",
                      "&amp;",
                      "#",
                      "\xef\xbf\xbf",
                      "\xef\xbf\xbe",
                      "\xc3\xa4",
                      "\xff",
                      "x",
                      " ",
                      "&#x10003c;" });
    }

    QByteArray Value()
    {
        QByteArray value;
        for (int count = m_oRandom.bounded(4); count > 0; --count) {
            value += Pick(
                { "x", "&a;", "&b;", "&c;", "&lt;", "&#60;", "&u;", ">", "/", "\xc3\xa4", "]", "-->", "'", "&#38;" });
        }
        const QByteArray quote = value.contains('\'') || Maybe(2) ? "\"" : "'";
        return quote + value + quote;
    }

    QByteArray EntityValue()
    {
        QByteArray value;
        for (int count = m_oRandom.bounded(4); count > 0; --count) {
            value += Pick({ "x",
                            "&a;",
                            "&b;",
                            "&c;",
                            "&#60;b>",
                            "<b>",
                            "</b>",
                            "<b/>",
                            "&#60;/b>",
                            "%a;",
                            "%b;",
                            "&#38;",
                            "&",
                            "<!--",
                            "-->",
                            "&#38;#60;b>",
                            "<![CDATA[",
                            "]]>",
                            "<!ENTITY c '<b/>'>",
                            "]",
                            "<?p ",
                            "?>",
                            "&#65596;b>",
                            "b",
                            "c;",
                            "&#xffff;" });
        }
        const QByteArray quote = value.contains('\'') ? "\"" : "'";
        return quote + value + quote;
    }

    QByteArray Declaration()
    {
        switch (m_oRandom.bounded(9)) {
        case 0:
            return "<!ELEMENT" + Blank() + Name() + " " + Pick({ "EMPTY", "ANY", "(a|b)*", "((a,b)+,c?)", "(#PCDATA)" })
                + ">";
        case 1:
            return "<!ATTLIST" + Blank() + Name() + " x CDATA " + Value() + ">";
        case 2:
            return Pick({ "<!-- ]> ' -->", "<?p ]> \"?>", "%a;", "%b;", " ", "<!NOTATION n SYSTEM '>'>" });
        case 3:
            return "<!ENTITY " + Name() + " SYSTEM 'x'" + Pick({ "", " NDATA n", " NDATA" }) + ">";
        case 4:
            return "<!ENTITY % " + Pick({ "a", "b" }) + Blank() + EntityValue() + Blank() + ">";
        default:
            return "<!ENTITY" + Blank() + Pick({ "a", "b", "c" }) + Blank() + EntityValue() + Blank() + ">";
        }
    }

    QByteArray Doctype()
    {
        QByteArray text = "<!DOCTYPE" + Blank() + Name() + Pick({ "", " SYSTEM '>'", " PUBLIC \"p\" 's'", " " });
        if (!Maybe(4)) {
            text += "[";
            for (int count = m_oRandom.bounded(5); count > 0; --count) {
                text += Declaration() + Blank();
            }
            text += "]";
        }
        return text + Blank() + ">";
    }

    QByteArray Content()
    {
        return Pick({ "x", "&a;", "&b;", "&c;", "&lt;", "&#60;", "<!-- <b> -->", "<?p <b> ?>", "<![CDATA[<b>]]>",
                      "\xc3\xa4", "]", ">", "\n", "<?p?>", "<![CDATA[]]]>", "'", "\"", "</b>" });
    }

    QByteArray Element(int depth)
    {
        const QByteArray name = Name();
        QByteArray text = "<" + name;
        for (int count = m_oRandom.bounded(3); count > 0; --count) {
            text += Blank() + Pick({ "x", "y", "xmlns", "xmlns:q" }) + Pick({ "=", " = " }) + Value();
        }
        if (Maybe(3)) {
            return text + Blank().trimmed() + "/>";
        }
        text += Pick({ ">", " >", ">" });
        for (int count = m_oRandom.bounded(4); count > 0; --count) {
            text += depth < 6 && Maybe(2) ? Element(depth + 1) : Content();
        }
        return text + "</" + name + (Maybe(9) ? Blank() : "") + ">";
    }

    void Mutate(QByteArray &text)
    {
        const int at = m_oRandom.bounded(text.size() + 1);
        switch (m_oRandom.bounded(4)) {
        case 0:
            text.insert(at, Piece());
            break;
        case 1:
            text.remove(at, 1 + m_oRandom.bounded(3));
            break;
        case 2:
            text.insert(at, text.mid(m_oRandom.bounded(text.size() + 1), m_oRandom.bounded(40)));
            break;
        default:
            text.truncate(at);
        }
    }

    QRandomGenerator m_oRandom;
};
