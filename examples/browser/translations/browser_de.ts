<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>BrowserWindow</name>
    <message>
        <source>KelTab Browser</source>
        <translation>KelTab-Browser</translation>
    </message>
    <message>
        <source>%1 - KelTab Browser</source>
        <translation>%1 – KelTab-Browser</translation>
    </message>
    <message>
        <source>Zoom %1 %</source>
        <translation>Zoom %1 %</translation>
    </message>
    <message>
        <source>New tab (Ctrl+T)</source>
        <translation>Neuer Tab (Strg+T)</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>Neuer Tab</translation>
    </message>
    <message>
        <source>No recently closed tab to reopen.</source>
        <translation>Kein zuletzt geschlossener Tab zum Wiederherstellen.</translation>
    </message>
    <message>
        <source>Downloads: this demo downloads nothing but tab icons.</source>
        <translation>Downloads: Diese Demo lädt nur Tab-Symbole herunter.</translation>
    </message>
    <message>
        <source>Developer tools belong to a real browser engine, which this demo does not embed.</source>
        <translation>Entwicklerwerkzeuge gehören zu einer echten Browser-Engine, die diese Demo nicht einbettet.</translation>
    </message>
    <message numerus="yes">
        <source>History: %n tab(s) closed in this session.</source>
        <translation>
            <numerusform>Verlauf: %n Tab in dieser Sitzung geschlossen.</numerusform>
            <numerusform>Verlauf: %n Tabs in dieser Sitzung geschlossen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Recently closed tabs forgotten.</source>
        <translation>Zuletzt geschlossene Tabs vergessen.</translation>
    </message>
    <message>
        <source>The home tab stays open.</source>
        <translation>Der Start-Tab bleibt offen.</translation>
    </message>
    <message>
        <source>Only web pages can be bookmarked.</source>
        <translation>Nur Webseiten können als Lesezeichen gespeichert werden.</translation>
    </message>
    <message>
        <source>Bookmarked %1</source>
        <translation>Lesezeichen für %1 gespeichert</translation>
    </message>
    <message>
        <source>Copied %1</source>
        <translation>%1 kopiert</translation>
    </message>
    <message>
        <source>Only http and https pages open in the system browser.</source>
        <translation>Nur http- und https-Seiten werden im Systembrowser geöffnet.</translation>
    </message>
    <message>
        <source>No system browser could open %1</source>
        <translation>Kein Systembrowser konnte %1 öffnen</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not on this page.</source>
        <translation>„%1“ steht nicht auf dieser Seite.</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>KelTab Browser</source>
        <translation>KelTab-Browser</translation>
    </message>
    <message>
        <source>Type an address and press Enter</source>
        <translation>Adresse eingeben und Eingabetaste drücken</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Willkommen</translation>
    </message>
    <message>
        <source>Host&apos;s guide</source>
        <translation>Leitfaden für Hosts</translation>
    </message>
    <message>
        <source>Signals</source>
        <translation>Signale</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>qt.io</source>
        <translation>qt.io</translation>
    </message>
</context>
<context>
    <name>NavigationBar</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Back (Alt+Left)</source>
        <translation>Zurück (Alt+Links)</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Forward (Alt+Right)</source>
        <translation>Vorwärts (Alt+Rechts)</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Reload (F5)</source>
        <translation>Neu laden (F5)</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Bookmark this page</source>
        <translation>Lesezeichen für diese Seite</translation>
    </message>
    <message>
        <source>Bookmark this page (Ctrl+D)</source>
        <translation>Lesezeichen für diese Seite (Strg+D)</translation>
    </message>
    <message>
        <source>Type an address</source>
        <translation>Adresse eingeben</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Find in page</source>
        <translation>Auf der Seite suchen</translation>
    </message>
</context>
<context>
    <name>PluginPage</name>
    <message>
        <source>Notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>A plug-in page: the tab holds a plug-in code instead of an address.</source>
        <translation>Eine Plug-in-Seite: Der Tab enthält einen Plug-in-Code statt einer Adresse.</translation>
    </message>
    <message>
        <source>Write something down...</source>
        <translation>Etwas notieren …</translation>
    </message>
</context>
<context>
    <name>TabRecordFactory</name>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notizen</translation>
    </message>
</context>
<context>
    <name>TextBrowserPage</name>
    <message>
        <source>Welcome</source>
        <translation>Willkommen</translation>
    </message>
    <message>
        <source>A host&apos;s guide</source>
        <translation>Leitfaden für Hosts</translation>
    </message>
    <message>
        <source>Signals a host answers</source>
        <translation>Signale, auf die ein Host antwortet</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>Neuer Tab</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Cannot open this address&lt;/h2&gt;&lt;p&gt;The demo shows local pages and http or https pages only.&lt;/p&gt;</source>
        <translation>&lt;h2&gt;Diese Adresse kann nicht geöffnet werden&lt;/h2&gt;&lt;p&gt;Die Demo zeigt nur lokale Seiten sowie http- und https-Seiten.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Cannot open page</source>
        <translation>Seite kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Loading %1 ...</source>
        <translation>%1 wird geladen …</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Cannot load this page&lt;/h2&gt;&lt;p&gt;%1&lt;/p&gt;</source>
        <translation>&lt;h2&gt;Diese Seite kann nicht geladen werden&lt;/h2&gt;&lt;p&gt;%1&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Cannot load page</source>
        <translation>Seite kann nicht geladen werden</translation>
    </message>
    <message>
        <source>This address sends %1, which the demo does not show.</source>
        <translation>Diese Adresse sendet %1, was die Demo nicht anzeigt.</translation>
    </message>
</context>
</TS>
