<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>BrowserGestureHandler</name>
    <message>
        <source>Invalid action</source>
        <translation>无效操作</translation>
    </message>
</context>
<context>
    <name>BrowserTabBar</name>
    <message>
        <source>New tab</source>
        <translation>新标签页</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>关闭标签页</translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation>关闭其他标签页</translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation>关闭左侧标签页</translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation>关闭右侧标签页</translation>
    </message>
</context>
<context>
    <name>BrowserTabBarBase</name>
    <message>
        <source>Recover recently closed tabs</source>
        <translation>恢复最近关闭的标签页</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>新标签页</translation>
    </message>
    <message>
        <source>Tabs</source>
        <translation>标签页</translation>
    </message>
    <message>
        <source>Close tab %1</source>
        <translation>关闭标签页“%1”</translation>
    </message>
    <message>
        <source>Scroll tabs left</source>
        <translation>向左滚动标签页</translation>
    </message>
    <message>
        <source>Scroll tabs right</source>
        <translation>向右滚动标签页</translation>
    </message>
</context>
<context>
    <name>BrowserTabBarEx</name>
    <message>
        <source>Refresh tab</source>
        <translation>刷新标签页</translation>
    </message>
    <message>
        <source>Add Fav</source>
        <translation>添加到收藏夹</translation>
    </message>
    <message>
        <source>Copy link</source>
        <translation>复制链接</translation>
    </message>
    <message>
        <source>Open in Browser</source>
        <translation>在浏览器中打开</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>关闭标签页</translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation>关闭其他标签页</translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation>关闭右侧标签页</translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation>关闭左侧标签页</translation>
    </message>
</context>
<context>
    <name>KelMouseGesture</name>
    <message>
        <source>Invalid action</source>
        <translation>无效操作</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>后退</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>前进</translation>
    </message>
    <message>
        <source>PageUp</source>
        <translation>向上翻页</translation>
    </message>
    <message>
        <source>PageDown</source>
        <translation>向下翻页</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>关闭标签页</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>新标签页</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新加载</translation>
    </message>
    <message>
        <source>Close all</source>
        <translation>全部关闭</translation>
    </message>
    <message>
        <source>Previous tab</source>
        <translation>上一个标签页</translation>
    </message>
    <message>
        <source>Next tab</source>
        <translation>下一个标签页</translation>
    </message>
    <message>
        <source>Recover recently closed tab</source>
        <translation>恢复最近关闭的标签页</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>New tab</source>
        <translation>新标签页</translation>
    </message>
</context>
</TS>
