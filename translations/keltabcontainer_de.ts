<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>BrowserGestureHandler</name>
    <message>
        <source>Invalid action</source>
        <translation>Ungültige Aktion</translation>
    </message>
</context>
<context>
    <name>BrowserTabBar</name>
    <message>
        <source>New tab</source>
        <translation>Neuer Tab</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>Tab schließen</translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation>Andere Tabs schließen</translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation>Tabs links schließen</translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation>Tabs rechts schließen</translation>
    </message>
</context>
<context>
    <name>BrowserTabBarBase</name>
    <message>
        <source>Recover recently closed tabs</source>
        <translation>Zuletzt geschlossene Tabs wiederherstellen</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>Neuer Tab</translation>
    </message>
    <message>
        <source>Tabs</source>
        <translation>Tabs</translation>
    </message>
    <message>
        <source>Close tab %1</source>
        <translation>Tab %1 schließen</translation>
    </message>
    <message>
        <source>Scroll tabs left</source>
        <translation>Tabs nach links scrollen</translation>
    </message>
    <message>
        <source>Scroll tabs right</source>
        <translation>Tabs nach rechts scrollen</translation>
    </message>
</context>
<context>
    <name>BrowserTabBarEx</name>
    <message>
        <source>Refresh tab</source>
        <translation>Tab neu laden</translation>
    </message>
    <message>
        <source>Add Fav</source>
        <translation>Zu Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Copy link</source>
        <translation>Link kopieren</translation>
    </message>
    <message>
        <source>Open in Browser</source>
        <translation>Im Browser öffnen</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>Tab schließen</translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation>Andere Tabs schließen</translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation>Tabs rechts schließen</translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation>Tabs links schließen</translation>
    </message>
</context>
<context>
    <name>KelMouseGesture</name>
    <message>
        <source>Invalid action</source>
        <translation>Ungültige Aktion</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>PageUp</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>PageDown</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>Tab schließen</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>Neuer Tab</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Close all</source>
        <translation>Alle schließen</translation>
    </message>
    <message>
        <source>Previous tab</source>
        <translation>Vorheriger Tab</translation>
    </message>
    <message>
        <source>Next tab</source>
        <translation>Nächster Tab</translation>
    </message>
    <message>
        <source>Recover recently closed tab</source>
        <translation>Zuletzt geschlossenen Tab wiederherstellen</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>New tab</source>
        <translation>Neuer Tab</translation>
    </message>
</context>
</TS>
