<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>BrowserWindow</name>
    <message>
        <source>KelTab Browser</source>
        <translation>KelTab 浏览器</translation>
    </message>
    <message>
        <source>%1 - KelTab Browser</source>
        <translation>%1 - KelTab 浏览器</translation>
    </message>
    <message>
        <source>Zoom %1 %</source>
        <translation>缩放 %1%</translation>
    </message>
    <message>
        <source>New tab (Ctrl+T)</source>
        <translation>新标签页 (Ctrl+T)</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>新标签页</translation>
    </message>
    <message>
        <source>No recently closed tab to reopen.</source>
        <translation>没有可重新打开的最近关闭的标签页。</translation>
    </message>
    <message>
        <source>Downloads: this demo downloads nothing but tab icons.</source>
        <translation>下载：此演示只下载标签页图标。</translation>
    </message>
    <message>
        <source>Developer tools belong to a real browser engine, which this demo does not embed.</source>
        <translation>开发者工具属于真正的浏览器引擎，此演示并未嵌入。</translation>
    </message>
    <message numerus="yes">
        <source>History: %n tab(s) closed in this session.</source>
        <translation>
            <numerusform>历史：本次会话中关闭了 %n 个标签页。</numerusform>
        </translation>
    </message>
    <message>
        <source>Recently closed tabs forgotten.</source>
        <translation>已清除最近关闭的标签页。</translation>
    </message>
    <message>
        <source>The home tab stays open.</source>
        <translation>主页标签页保持打开。</translation>
    </message>
    <message>
        <source>Only web pages can be bookmarked.</source>
        <translation>只有网页可以加入书签。</translation>
    </message>
    <message>
        <source>Bookmarked %1</source>
        <translation>已将 %1 加入书签</translation>
    </message>
    <message>
        <source>Copied %1</source>
        <translation>已复制 %1</translation>
    </message>
    <message>
        <source>Only http and https pages open in the system browser.</source>
        <translation>只有 http 和 https 页面可以在系统浏览器中打开。</translation>
    </message>
    <message>
        <source>No system browser could open %1</source>
        <translation>没有系统浏览器能打开 %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not on this page.</source>
        <translation>此页面上没有“%1”。</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>KelTab Browser</source>
        <translation>KelTab 浏览器</translation>
    </message>
    <message>
        <source>Type an address and press Enter</source>
        <translation>输入地址并按回车键</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>地址</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>欢迎</translation>
    </message>
    <message>
        <source>Host&apos;s guide</source>
        <translation>宿主程序指南</translation>
    </message>
    <message>
        <source>Signals</source>
        <translation>信号</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>笔记</translation>
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
        <translation>后退</translation>
    </message>
    <message>
        <source>Back (Alt+Left)</source>
        <translation>后退 (Alt+Left)</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>前进</translation>
    </message>
    <message>
        <source>Forward (Alt+Right)</source>
        <translation>前进 (Alt+Right)</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新加载</translation>
    </message>
    <message>
        <source>Reload (F5)</source>
        <translation>重新加载 (F5)</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>主页</translation>
    </message>
    <message>
        <source>Bookmark this page</source>
        <translation>将此页加入书签</translation>
    </message>
    <message>
        <source>Bookmark this page (Ctrl+D)</source>
        <translation>将此页加入书签 (Ctrl+D)</translation>
    </message>
    <message>
        <source>Type an address</source>
        <translation>输入地址</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>地址</translation>
    </message>
    <message>
        <source>Find in page</source>
        <translation>在页面中查找</translation>
    </message>
</context>
<context>
    <name>PluginPage</name>
    <message>
        <source>Notes</source>
        <translation>笔记</translation>
    </message>
    <message>
        <source>A plug-in page: the tab holds a plug-in code instead of an address.</source>
        <translation>插件页面：此标签页保存的是插件代码而不是地址。</translation>
    </message>
    <message>
        <source>Write something down...</source>
        <translation>写点什么……</translation>
    </message>
</context>
<context>
    <name>TabRecordFactory</name>
    <message>
        <source>Home</source>
        <translation>主页</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>笔记</translation>
    </message>
</context>
<context>
    <name>TextBrowserPage</name>
    <message>
        <source>Welcome</source>
        <translation>欢迎</translation>
    </message>
    <message>
        <source>A host&apos;s guide</source>
        <translation>宿主程序指南</translation>
    </message>
    <message>
        <source>Signals a host answers</source>
        <translation>宿主程序响应的信号</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>新标签页</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Cannot open this address&lt;/h2&gt;&lt;p&gt;The demo shows local pages and http or https pages only.&lt;/p&gt;</source>
        <translation>&lt;h2&gt;无法打开此地址&lt;/h2&gt;&lt;p&gt;此演示只显示本地页面以及 http 或 https 页面。&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Cannot open page</source>
        <translation>无法打开页面</translation>
    </message>
    <message>
        <source>Loading %1 ...</source>
        <translation>正在加载 %1……</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Cannot load this page&lt;/h2&gt;&lt;p&gt;%1&lt;/p&gt;</source>
        <translation>&lt;h2&gt;无法加载此页面&lt;/h2&gt;&lt;p&gt;%1&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Cannot load page</source>
        <translation>无法加载页面</translation>
    </message>
    <message>
        <source>This address sends %1, which the demo does not show.</source>
        <translation>此地址发送的是 %1，此演示无法显示。</translation>
    </message>
</context>
</TS>
