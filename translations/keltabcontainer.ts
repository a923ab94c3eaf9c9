<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1">
<context>
    <name>BrowserGestureHandler</name>
    <message>
        <source>Invalid action</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BrowserTabBar</name>
    <message>
        <source>New tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BrowserTabBarBase</name>
    <message>
        <source>Recover recently closed tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close tab %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scroll tabs left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scroll tabs right</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BrowserTabBarEx</name>
    <message>
        <source>Refresh tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Fav</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open in Browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>KelMouseGesture</name>
    <message>
        <source>Invalid action</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PageUp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PageDown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reload</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close all</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recover recently closed tab</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>New tab</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
