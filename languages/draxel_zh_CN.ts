<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>BusAddress</name>
    <message>
        <source>&quot;%1&quot; names no bus. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>“%1” 不是总线名称。请写成 PLUGIN:INTERFACE 的形式，例如 socketcan:can0。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; names no back end before the colon. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>“%1” 的冒号前没有驱动名称。请写成 PLUGIN:INTERFACE 的形式，例如 socketcan:can0。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; names no interface after the colon. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>“%1” 的冒号后没有接口名称。请写成 PLUGIN:INTERFACE 的形式，例如 socketcan:can0。</translation>
    </message>
</context>
<context>
    <name>BusConnection</name>
    <message>
        <source>The attempt to connect was ended by another one.</source>
        <translation>该连接尝试已被另一次连接终止。</translation>
    </message>
    <message>
        <source>The bus %1 cannot be opened: %2</source>
        <translation>无法打开总线 %1：%2</translation>
    </message>
    <message>
        <source>The bus %1 cannot be used. %2</source>
        <translation>无法使用总线 %1。%2</translation>
    </message>
    <message>
        <source>The interface %1 does not take the bit rate %2. Setting it needs the library libsocketcan and the right to configure interfaces; &quot;ip link set %1 type can bitrate %2&quot; does it by hand, then connect without a bit rate.</source>
        <translation>接口 %1 不接受波特率 %2。设置波特率需要 libsocketcan 库和配置接口的权限；可用“ip link set %1 type can bitrate %2”手动设置，然后在不指定波特率的情况下连接。</translation>
    </message>
</context>
<context>
    <name>BusSettings</name>
    <message>
        <source>&quot;%1&quot; is no bit rate. Give it in bit/s, for example 250000.</source>
        <translation>“%1” 不是波特率。请以 bit/s 为单位指定，例如 250000。</translation>
    </message>
</context>
<context>
    <name>CanOpen</name>
    <message>
        <source>The toggle bit did not alternate</source>
        <translation>翻转位未交替变化</translation>
    </message>
    <message>
        <source>The SDO protocol timed out</source>
        <translation>SDO 协议超时</translation>
    </message>
    <message>
        <source>The command specifier is not valid or unknown</source>
        <translation>命令字无效或未知</translation>
    </message>
    <message>
        <source>The block size is not valid</source>
        <translation>块大小无效</translation>
    </message>
    <message>
        <source>The sequence number is not valid</source>
        <translation>序号无效</translation>
    </message>
    <message>
        <source>The checksum is wrong</source>
        <translation>校验和错误</translation>
    </message>
    <message>
        <source>The device is out of memory</source>
        <translation>设备内存不足</translation>
    </message>
    <message>
        <source>The access to the object is not supported</source>
        <translation>不支持对该对象的访问</translation>
    </message>
    <message>
        <source>The object can only be written</source>
        <translation>该对象只可写</translation>
    </message>
    <message>
        <source>The object can only be read</source>
        <translation>该对象只可读</translation>
    </message>
    <message>
        <source>The object does not exist</source>
        <translation>该对象不存在</translation>
    </message>
    <message>
        <source>The object cannot be mapped to a PDO</source>
        <translation>该对象无法映射到 PDO</translation>
    </message>
    <message>
        <source>The mapped objects exceed the length of a PDO</source>
        <translation>映射的对象超出 PDO 长度</translation>
    </message>
    <message>
        <source>The parameter is incompatible</source>
        <translation>参数不兼容</translation>
    </message>
    <message>
        <source>The device has an internal incompatibility</source>
        <translation>设备内部不兼容</translation>
    </message>
    <message>
        <source>The access failed because of a hardware error</source>
        <translation>因硬件错误访问失败</translation>
    </message>
    <message>
        <source>The length does not match the data type</source>
        <translation>长度与数据类型不符</translation>
    </message>
    <message>
        <source>There are more bytes than the data type has</source>
        <translation>字节数多于数据类型的长度</translation>
    </message>
    <message>
        <source>There are fewer bytes than the data type has</source>
        <translation>字节数少于数据类型的长度</translation>
    </message>
    <message>
        <source>The sub-index does not exist</source>
        <translation>子索引不存在</translation>
    </message>
    <message>
        <source>The value is not valid</source>
        <translation>值无效</translation>
    </message>
    <message>
        <source>The value is too high</source>
        <translation>值过大</translation>
    </message>
    <message>
        <source>The value is too low</source>
        <translation>值过小</translation>
    </message>
    <message>
        <source>The maximum is less than the minimum</source>
        <translation>最大值小于最小值</translation>
    </message>
    <message>
        <source>The resource is not available</source>
        <translation>资源不可用</translation>
    </message>
    <message>
        <source>General error</source>
        <translation>一般错误</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored</source>
        <translation>数据无法传输或保存</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored because of local control</source>
        <translation>因本地控制，数据无法传输或保存</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored in the present state of the device</source>
        <translation>在设备当前状态下，数据无法传输或保存</translation>
    </message>
    <message>
        <source>There is no object dictionary</source>
        <translation>没有对象字典</translation>
    </message>
    <message>
        <source>No data is available</source>
        <translation>没有可用数据</translation>
    </message>
    <message>
        <source>Abort code %1</source>
        <translation>中止代码 %1</translation>
    </message>
</context>
<context>
    <name>CanOpen::CanPort</name>
    <message>
        <source>The CAN interface did not connect within %1 seconds.</source>
        <translation>CAN 接口未在 %1 秒内连接。</translation>
    </message>
    <message>
        <source>The CAN interface was disconnected.</source>
        <translation>CAN 接口已断开。</translation>
    </message>
    <message>
        <source>The CAN interface failed: %1</source>
        <translation>CAN 接口故障：%1</translation>
    </message>
    <message>
        <source>The CAN interface does not send any more: %1</source>
        <translation>CAN 接口不再发送：%1</translation>
    </message>
</context>
<context>
    <name>ConnectionBar</name>
    <message>
        <source>%1 bit/s</source>
        <translation>%1 bit/s</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>断开</translation>
    </message>
    <message>
        <source>Open this bus</source>
        <translation>打开此总线</translation>
    </message>
    <message>
        <source>Close the bus</source>
        <translation>关闭总线</translation>
    </message>
    <message>
        <source>&amp;Back end:</source>
        <translation>驱动(&amp;B)：</translation>
    </message>
    <message>
        <source>The kind of CAN adapter</source>
        <translation>CAN 适配器的类型</translation>
    </message>
    <message>
        <source>&amp;Interface:</source>
        <translation>接口(&amp;I)：</translation>
    </message>
    <message>
        <source>One of the adapters found; others can be typed in</source>
        <translation>已找到的适配器之一；也可输入其他名称</translation>
    </message>
    <message>
        <source>none found: type a name</source>
        <translation>未找到：请输入名称</translation>
    </message>
    <message>
        <source>Look for adapters again</source>
        <translation>重新搜索适配器</translation>
    </message>
    <message>
        <source>Bit &amp;rate:</source>
        <translation>波特率(&amp;R)：</translation>
    </message>
    <message>
        <source>Set on the adapter before connecting</source>
        <translation>连接前在适配器上设置</translation>
    </message>
    <message>
        <source>as configured</source>
        <translation>按已有配置</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
</context>
<context>
    <name>DraxelHost</name>
    <message>
        <source>Looks into the CANopen bus of light electric vehicles.</source>
        <translation>查看轻型电动车的 CANopen 总线。</translation>
    </message>
    <message>
        <source>Choose this bus, for example socketcan:can0 or simulated:pedelec.</source>
        <translation>选择此总线，例如 socketcan:can0 或 simulated:pedelec。</translation>
    </message>
    <message>
        <source>Set this bit rate (bit/s) when connecting.</source>
        <translation>连接时设置此波特率 (bit/s)。</translation>
    </message>
    <message>
        <source>Connect to the bus at once.</source>
        <translation>立即连接总线。</translation>
    </message>
    <message>
        <source>The language, for example de.</source>
        <translation>语言，例如 zh_CN。</translation>
    </message>
    <message>
        <source>Load the plug-ins of this folder.</source>
        <translation>加载此文件夹中的插件。</translation>
    </message>
    <message>
        <source>--bitrate needs --bus.</source>
        <translation>--bitrate 需要与 --bus 一起使用。</translation>
    </message>
    <message>
        <source>What is &quot;%1&quot; for?</source>
        <translation>“%1”是做什么用的？</translation>
    </message>
</context>
<context>
    <name>InterfaceWatch</name>
    <message>
        <source>The interface %1 is there.</source>
        <translation>接口 %1 已就绪。</translation>
    </message>
    <message>
        <source>The interface %1 is down. Switch it on, for example with &quot;ip link set %1 up&quot;.</source>
        <translation>接口 %1 已关闭。请将其启用，例如使用“ip link set %1 up”。</translation>
    </message>
    <message>
        <source>There is no interface %1. Check that the adapter is plugged in.</source>
        <translation>没有接口 %1。请检查适配器是否已插好。</translation>
    </message>
    <message>
        <source>The interface %1 was removed and came back.</source>
        <translation>接口 %1 被移除后又恢复。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>%1 has no window.</source>
        <translation>%1 没有窗口。</translation>
    </message>
    <message>
        <source>No plug-in is loaded. Put one into the folder &quot;plugins&quot; beside the program and start it again.</source>
        <translation>未加载插件。请将插件放入程序旁的“plugins”文件夹，然后重新启动程序。</translation>
    </message>
    <message>
        <source>Which interface is meant? Choose one, or type its name, and connect again.</source>
        <translation>要使用哪个接口？请选择一个或输入其名称，然后重新连接。</translation>
    </message>
    <message>
        <source>Node %1 did not answer when asked for object %2; the read ended there.</source>
        <translation>请求对象 %2 时节点 %1 未应答；读取在此结束。</translation>
    </message>
</context>
<context>
    <name>PluginLibrary</name>
    <message>
        <source>The file %1 is no plug-in: %2</source>
        <translation>文件 %1 不是插件：%2</translation>
    </message>
    <message>
        <source>The library %1 is a plug-in for another program.</source>
        <translation>库 %1 是其他程序的插件。</translation>
    </message>
    <message>
        <source>The plug-in %1 cannot be loaded: %2</source>
        <translation>无法加载插件 %1：%2</translation>
    </message>
    <message>
        <source>The plug-in %1 was made for another version of this program (it does not know the interface %2).</source>
        <translation>插件 %1 是为本程序的其他版本制作的（它不支持接口 %2）。</translation>
    </message>
</context>
<context>
    <name>PluginSession</name>
    <message>
        <source>There is no plug-in in the folder %1.</source>
        <translation>文件夹 %1 中没有插件。</translation>
    </message>
</context>
<context>
    <name>SimulatedBus</name>
    <message>
        <source>The simulated bus is down</source>
        <translation>模拟总线已关闭</translation>
    </message>
    <message>
        <source>The simulated bus runs at %1 bit/s already, not at %2</source>
        <translation>模拟总线已在以 %1 bit/s 运行，而不是 %2</translation>
    </message>
</context>
<context>
    <name>Simulator::SimulatedCanDevice</name>
    <message>
        <source>The simulated bus is down</source>
        <translation>模拟总线已关闭</translation>
    </message>
    <message>
        <source>%1 bit/s is no bit rate of CAN; possible are 10000, 20000, 50000, 100000, 125000, 250000, 500000, 800000 and 1000000, or 0 for as fast as possible</source>
        <translation>%1 bit/s 不是 CAN 波特率；可用值为 10000、20000、50000、100000、125000、250000、500000、800000 和 1000000，或用 0 表示尽可能快</translation>
    </message>
    <message>
        <source>Cannot write this kind of frame</source>
        <translation>无法发送此类帧</translation>
    </message>
    <message>
        <source>No such device or address</source>
        <translation>没有此设备或地址</translation>
    </message>
    <message>
        <source>No buffer space available</source>
        <translation>没有可用的缓冲区空间</translation>
    </message>
    <message>
        <source>The simulated bus is gone</source>
        <translation>模拟总线已消失</translation>
    </message>
    <message>
        <source>There is no node %1 for the fault &quot;%2&quot;</source>
        <translation>没有可施加故障“%2”的节点 %1</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>Frames: %1/s</source>
        <translation>帧：%1/秒</translation>
    </message>
    <message>
        <source>Nodes heard: %1</source>
        <translation>已发现节点：%1</translation>
    </message>
    <message>
        <source>SDO: %1 read, %2 refused, %3 without answer</source>
        <translation>SDO：%1 已读取，%2 被拒绝，%3 无应答</translation>
    </message>
    <message>
        <source>Uploads since the bus was connected; %1 requests were repeated, %2 frames sent again</source>
        <translation>自总线连接以来的上传；重复请求：%1，重发帧：%2</translation>
    </message>
    <message>
        <source>Not connected.</source>
        <translation>未连接。</translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation>正在连接 %1 ...</translation>
    </message>
    <message>
        <source>Connected to %1 at %2 kbit/s.</source>
        <translation>已连接到 %1，%2 kbit/s。</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>已连接到 %1。</translation>
    </message>
    <message>
        <source>Connection lost: %1 Trying to connect again ...</source>
        <translation>连接已丢失：%1 正在重新连接 ...</translation>
    </message>
</context>
</TS>
