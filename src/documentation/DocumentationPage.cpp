#include "documentation/DocumentationPage.h"

#include "documentation/MarkdownToHTML.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString logoAddress(const QByteArray& logo) {
    return u"data:image/png;base64,"_s + QString::fromLatin1(logo.toBase64());
}

QString webViewHead() {
    return uR"(<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'">
<style>
:root {
    color-scheme: light dark;
    --text-primary: text;
    --text-secondary: secondary-label;
    --background: window-background;
    --card-background: control-background;
    --separator: separator;
    --link: link-color;
    --code-background: control-background;
    --header-border: separator;
    --table-border: separator;
    --table-header: control-background;
    --scrollbar-thumb: tertiary-label;
}
body {
    font-family: -apple-system, BlinkMacSystemFont, sans-serif;
    font-size: 14px;
    line-height: 1.6;
    padding: 24px 32px;
    margin: 0;
    color: var(--text-primary);
    background: var(--background);
}
.doc-header { display: flex; align-items: center; gap: 12px; margin-bottom: 24px; }
.doc-header img { width: 32px; height: 32px; }
.doc-header h1 { margin: 0; }
h1 { font-size: 28px; font-weight: 600; }
h2 { font-size: 22px; font-weight: 600; border-bottom: 1px solid var(--header-border); padding-bottom: 6px; }
h3 { font-size: 16px; font-weight: 600; }
a { color: var(--link); }
hr { border: none; border-top: 1px solid var(--separator); }
table { border-collapse: collapse; width: 100%; }
th, td { border: 1px solid var(--table-border); padding: 6px 10px; text-align: left; vertical-align: top; }
th { background: var(--table-header); }
code { font-family: 'SF Mono', Menlo, monospace; font-size: 13px; background: var(--code-background); padding: 1px 4px; border-radius: 4px; }
pre { background: var(--code-background); padding: 12px; border-radius: 6px; }
::-webkit-scrollbar { width: 8px; }
::-webkit-scrollbar-thumb { background: var(--scrollbar-thumb); border-radius: 4px; }
</style>)"_s;
}

QString documentationPage(const DocumentationParts& parts, const QString& head) {
    const QString markdown = parts.manual + u"\n\n---\n\n"_s + parts.copyright;
    return u"<!DOCTYPE html>\n<html>\n<head>\n"_s + head +
           u"\n</head>\n<body>\n<div class=\"doc-header\">\n<img src=\""_s + logoAddress(parts.logo) +
           u"\" alt=\"Quorvane\">\n<h1>"_s + kDocumentationTitle + u"</h1>\n</div>\n"_s + markdownToHTML(markdown) +
           u"\n</body>\n</html>"_s;
}

} // namespace quorvane
