<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>ComponentUpdateChecker</name>
    <message>
        <source>No connection to update information server at %1.</source>
        <translation>无法连接到 %1 的更新信息服务器。</translation>
    </message>
</context>
<context>
    <name>DataInterpreter</name>
    <message>
        <source>DXC not supported
</source>
        <translation>不支持 DXC
</translation>
    </message>
    <message>
        <source>DXC controller supported
</source>
        <translation>支持 DXC 控制器
</translation>
    </message>
    <message>
        <source>Active device
</source>
        <translation>主动设备
</translation>
    </message>
    <message>
        <source>Passive device
</source>
        <translation>被动设备
</translation>
    </message>
    <message>
        <source>Device not changeable by end-user
</source>
        <translation>最终用户不可更换的设备
</translation>
    </message>
    <message>
        <source>Device changeable by the end-user
</source>
        <translation>最终用户可更换的设备
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality not supported
</source>
        <translation>不支持制造商特定功能
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality supported
</source>
        <translation>支持制造商特定功能
</translation>
    </message>
    <message>
        <source>Masterless mode not supported
</source>
        <translation>不支持无主站模式
</translation>
    </message>
    <message>
        <source>Masterless mode supported
</source>
        <translation>支持无主站模式
</translation>
    </message>
    <message>
        <source>CANopen device not in Bootloader mode; application software running</source>
        <translation>CANopen 设备不在引导加载程序模式；应用软件正在运行</translation>
    </message>
    <message>
        <source>Bootloader active; no application software is running</source>
        <translation>引导加载程序已激活；应用软件未运行</translation>
    </message>
    <message>
        <source>Over voltage alarm supported</source>
        <translation>支持过压报警</translation>
    </message>
    <message>
        <source>Under voltage alarm supported</source>
        <translation>支持欠压报警</translation>
    </message>
    <message>
        <source>Output over current alarm supported</source>
        <translation>支持输出过流报警</translation>
    </message>
    <message>
        <source>Input over current alarm supported</source>
        <translation>支持输入过流报警</translation>
    </message>
    <message>
        <source>Electronic over temperature alarm supported</source>
        <translation>支持电子器件过温报警</translation>
    </message>
    <message>
        <source>Battery cells over temperature alarm supported</source>
        <translation>支持电芯过温报警</translation>
    </message>
    <message>
        <source>Communication error alarm supported</source>
        <translation>支持通信错误报警</translation>
    </message>
    <message>
        <source>Battery compatibility error alarm supported</source>
        <translation>支持电池兼容性错误报警</translation>
    </message>
    <message>
        <source>Electronic power stage defect alarm supported</source>
        <translation>支持功率级损坏报警</translation>
    </message>
    <message>
        <source>Fuse blown alarm supported</source>
        <translation>支持熔断器熔断报警</translation>
    </message>
    <message>
        <source>Cell damaged alarm supported</source>
        <translation>支持电芯损坏报警</translation>
    </message>
    <message>
        <source>Charge over temperature alarm supported</source>
        <translation>支持充电过温报警</translation>
    </message>
    <message>
        <source>Discharge over temperature alarm supported</source>
        <translation>支持放电过温报警</translation>
    </message>
    <message>
        <source>Sensor damaged alarm supported</source>
        <translation>支持传感器损坏报警</translation>
    </message>
    <message>
        <source>Wire broken alarm supported</source>
        <translation>支持断线报警</translation>
    </message>
    <message>
        <source>Isolation damaged alarm supported</source>
        <translation>支持绝缘损坏报警</translation>
    </message>
    <message>
        <source>Device is able to switch off or on</source>
        <translation>设备可关机或开机</translation>
    </message>
    <message>
        <source>Device is possibly active</source>
        <translation>设备可能为主动设备</translation>
    </message>
    <message>
        <source>Device is a master capable</source>
        <translation>设备可作为主站</translation>
    </message>
    <message>
        <source>Device is able to switch to sleep mode</source>
        <translation>设备可进入休眠模式</translation>
    </message>
    <message>
        <source>Device is able to limit the input current</source>
        <translation>设备可限制输入电流</translation>
    </message>
    <message>
        <source>Device is able to limit the output current</source>
        <translation>设备可限制输出电流</translation>
    </message>
    <message>
        <source>Device is able to limit the input voltage</source>
        <translation>设备可限制输入电压</translation>
    </message>
    <message>
        <source>Device is able to limit the output voltage</source>
        <translation>设备可限制输出电压</translation>
    </message>
    <message>
        <source>Device is able to transmit dynamic limitation</source>
        <translation>设备可发送动态限值</translation>
    </message>
    <message>
        <source>Device is able to receive dynamic limitation</source>
        <translation>设备可接收动态限值</translation>
    </message>
    <message>
        <source>Mechanical locking with charge&amp;lock cable supported</source>
        <translation>支持用充电锁止电缆进行机械锁定</translation>
    </message>
    <message>
        <source>Optical alarm supported</source>
        <translation>支持光报警</translation>
    </message>
    <message>
        <source>Vibration alarm supported</source>
        <translation>支持振动报警</translation>
    </message>
    <message>
        <source>RFID-key supported</source>
        <translation>支持 RFID 钥匙</translation>
    </message>
    <message>
        <source>Mechanical key supported</source>
        <translation>支持机械钥匙</translation>
    </message>
    <message>
        <source>GPS position tracking supported</source>
        <translation>支持 GPS 定位跟踪</translation>
    </message>
    <message>
        <source>Acoustic alarm supported</source>
        <translation>支持声音报警</translation>
    </message>
    <message>
        <source>Softlock is supported</source>
        <translation>支持电子锁车 (Softlock)</translation>
    </message>
    <message>
        <source>Mechanical locking (except charge&amp;lock cable) supported</source>
        <translation>支持机械锁定（充电锁止电缆除外）</translation>
    </message>
    <message>
        <source>Security not supported</source>
        <translation>不支持防盗</translation>
    </message>
    <message>
        <source>Security device; activation in a very secure environment only</source>
        <translation>防盗设备；仅可在高度安全的环境中激活</translation>
    </message>
    <message>
        <source>Internal device; user has the possibility to activate the key</source>
        <translation>内部设备；用户可激活密钥</translation>
    </message>
    <message>
        <source>External device; temporary keys required</source>
        <translation>外部设备；需要临时密钥</translation>
    </message>
    <message>
        <source>Internal device, simple changeable; automatic activation of the key resp. simple key learning possible</source>
        <translation>内部设备，易于更换；可自动激活密钥或简便地学习密钥</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25 km/h)</source>
        <translation>限速电助力自行车 (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45 km/h)</source>
        <translation>限速电助力自行车 (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45 km/h)</source>
        <translation>高速电助力自行车 (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;25 km/h)</source>
        <translation>限速电动自行车 (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;45 km/h)</source>
        <translation>限速电动自行车 (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Motor-bike with speed (&gt;45 km/h)</source>
        <translation>电动摩托车 (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;32 km/h) USA</source>
        <translation>限速电动自行车 (&lt;32 km/h)，美国</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;20 km/h) CN</source>
        <translation>限速电动自行车 (&lt;20 km/h)，中国</translation>
    </message>
    <message>
        <source>Scooter</source>
        <translation>踏板车</translation>
    </message>
    <message>
        <source>Robot</source>
        <translation>机器人</translation>
    </message>
    <message>
        <source>Wheelchair</source>
        <translation>轮椅</translation>
    </message>
    <message>
        <source>Chemistry not specified</source>
        <translation>未指定电池化学体系</translation>
    </message>
    <message>
        <source>Lead acid (PbA)</source>
        <translation>铅酸 (PbA)</translation>
    </message>
    <message>
        <source>Nickel cadmium</source>
        <translation>镍镉</translation>
    </message>
    <message>
        <source>Nickel zinc (Ni-Zn)</source>
        <translation>镍锌 (Ni-Zn)</translation>
    </message>
    <message>
        <source>Reserved</source>
        <translation>保留</translation>
    </message>
    <message>
        <source>Nickel iron (Ni-Fe)</source>
        <translation>镍铁 (Ni-Fe)</translation>
    </message>
    <message>
        <source>Silver oxide</source>
        <translation>氧化银</translation>
    </message>
    <message>
        <source>Nickel hydrogen (NiH2)</source>
        <translation>镍氢气 (NiH2)</translation>
    </message>
    <message>
        <source>Nickel metal hydride</source>
        <translation>镍氢（金属氢化物）</translation>
    </message>
    <message>
        <source>Zinc/Alkaline/Manganese dioxide</source>
        <translation>锌/碱性/二氧化锰</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - carbon anode</source>
        <translation>锂离子 (Li-Ion) - 碳负极</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - Lithium titanate anode</source>
        <translation>锂离子 (Li-Ion) - 钛酸锂负极</translation>
    </message>
    <message>
        <source>Zinc bromine</source>
        <translation>锌溴</translation>
    </message>
    <message>
        <source>Metal air</source>
        <translation>金属空气</translation>
    </message>
    <message>
        <source>Lithium-Iron-sulphide</source>
        <translation>锂硫化铁</translation>
    </message>
    <message>
        <source>Sodium beta</source>
        <translation>钠-β 氧化铝</translation>
    </message>
    <message>
        <source>Alarm not supported</source>
        <translation>不支持报警</translation>
    </message>
    <message>
        <source>No installed batteries</source>
        <translation>未安装电池</translation>
    </message>
    <message>
        <source>No connected batteries</source>
        <translation>未连接电池</translation>
    </message>
    <message>
        <source>No unconnected installed batteries</source>
        <translation>没有已安装但未连接的电池</translation>
    </message>
    <message>
        <source>Security properties</source>
        <translation>防盗属性</translation>
    </message>
    <message>
        <source>Key class</source>
        <translation>密钥类别</translation>
    </message>
    <message>
        <source>undefined</source>
        <translation>未定义</translation>
    </message>
    <message>
        <source>DX is on,</source>
        <translation>DX 已开启,</translation>
    </message>
    <message>
        <source>DX is awake,</source>
        <translation>DX 已唤醒,</translation>
    </message>
    <message>
        <source>DX in standby,</source>
        <translation>DX 待机,</translation>
    </message>
    <message>
        <source>DX runs,</source>
        <translation>DX 运行,</translation>
    </message>
    <message>
        <source>DX warning,</source>
        <translation>DX 警告,</translation>
    </message>
    <message>
        <source>DX error,</source>
        <translation>DX 错误,</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25km/h</source>
        <translation>限速电助力自行车 (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45km/h</source>
        <translation>限速电助力自行车 (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45km/h</source>
        <translation>高速电助力自行车 (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>%1,</source>
        <translation>%1,</translation>
    </message>
    <message>
        <source>reserved</source>
        <translation>保留</translation>
    </message>
    <message>
        <source>Vendor ID</source>
        <translation>制造商 ID</translation>
    </message>
    <message>
        <source>Generic error</source>
        <translation>一般错误</translation>
    </message>
    <message>
        <source>
Current Error</source>
        <translation>
电流错误</translation>
    </message>
    <message>
        <source>
Voltage Error</source>
        <translation>
电压错误</translation>
    </message>
    <message>
        <source>
Temperature Error</source>
        <translation>
温度错误</translation>
    </message>
    <message>
        <source>
Communication error</source>
        <translation>
通信错误</translation>
    </message>
    <message>
        <source>
Device profile specific</source>
        <translation>
设备子协议特定错误</translation>
    </message>
    <message>
        <source>
Manufactor specific error</source>
        <translation>
制造商特定错误</translation>
    </message>
    <message>
        <source>Locking mechanism supported
</source>
        <translation>支持锁定机构
</translation>
    </message>
    <message>
        <source>No locking mechanism supported
</source>
        <translation>不支持锁定机构
</translation>
    </message>
    <message>
        <source>Device is locked locally
</source>
        <translation>设备已本地锁定
</translation>
    </message>
    <message>
        <source>Device is not locked locally
</source>
        <translation>设备未本地锁定
</translation>
    </message>
    <message>
        <source>No manipulation detected
</source>
        <translation>未检测到非法改动
</translation>
    </message>
    <message>
        <source>Manipulation detected
</source>
        <translation>检测到非法改动
</translation>
    </message>
    <message>
        <source>Device does not own the current encryption key
</source>
        <translation>设备没有当前加密密钥
</translation>
    </message>
    <message>
        <source>Device owns current encryption key
</source>
        <translation>设备拥有当前加密密钥
</translation>
    </message>
    <message>
        <source>Initial encryption key is missing
</source>
        <translation>缺少初始加密密钥
</translation>
    </message>
    <message>
        <source>Device owns initial encryption key
</source>
        <translation>设备拥有初始加密密钥
</translation>
    </message>
    <message>
        <source>No network lock requested
</source>
        <translation>未请求网络锁定
</translation>
    </message>
    <message>
        <source>Locking of all virtual devices in the EMS requested
</source>
        <translation>已请求锁定 EMS 中的所有虚拟设备
</translation>
    </message>
    <message>
        <source>Network is not locked
</source>
        <translation>网络未锁定
</translation>
    </message>
    <message>
        <source>All virtual devices in the EMS that support softlocking are locked
</source>
        <translation>EMS 中所有支持电子锁车 (Softlock) 的虚拟设备均已锁定
</translation>
    </message>
    <message>
        <source>No action</source>
        <translation>无动作</translation>
    </message>
    <message>
        <source>Enter operating</source>
        <translation>进入工作状态</translation>
    </message>
    <message>
        <source>Enter limiting</source>
        <translation>进入限制状态</translation>
    </message>
    <message>
        <source>Enter connected</source>
        <translation>进入已连接状态</translation>
    </message>
    <message>
        <source>Enter disconnected</source>
        <translation>进入已断开状态</translation>
    </message>
    <message>
        <source>Enter masterless operating</source>
        <translation>进入无主站工作状态</translation>
    </message>
    <message>
        <source>Enter compatibillity check</source>
        <translation>进入兼容性检查</translation>
    </message>
    <message>
        <source>Enter sleep mode and keep local layer settings</source>
        <translation>进入休眠模式并保留本地层设置</translation>
    </message>
    <message>
        <source>Enter sleep mode and set node id to 0xFF</source>
        <translation>进入休眠模式并将节点 ID 设为 0xFF</translation>
    </message>
    <message>
        <source>Current input active </source>
        <translation>电流输入有效 </translation>
    </message>
    <message>
        <source>Current output active </source>
        <translation>电流输出有效 </translation>
    </message>
    <message>
        <source>Fixed voltage input active </source>
        <translation>固定电压输入有效 </translation>
    </message>
    <message>
        <source>Fixed voltage output active </source>
        <translation>固定电压输出有效 </translation>
    </message>
    <message>
        <source>Current regulation/limitation active </source>
        <translation>电流调节/限制有效 </translation>
    </message>
    <message>
        <source>Voltage regulation/limitation active </source>
        <translation>电压调节/限制有效 </translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已断开</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>Compatibility Check</source>
        <translation>兼容性检查</translation>
    </message>
    <message>
        <source>Limiting</source>
        <translation>限制</translation>
    </message>
    <message>
        <source>Operating</source>
        <translation>工作</translation>
    </message>
    <message>
        <source>Masterless</source>
        <translation>无主站</translation>
    </message>
    <message>
        <source>Sleep Mode</source>
        <translation>休眠模式</translation>
    </message>
    <message>
        <source>Powerline on </source>
        <translation>电源线已接通 </translation>
    </message>
    <message>
        <source>Powerline off </source>
        <translation>电源线已断开 </translation>
    </message>
    <message>
        <source>EMS is not sleeping, ready to work </source>
        <translation>EMS 未休眠，工作就绪 </translation>
    </message>
    <message>
        <source>CAN communication is working properly </source>
        <translation>CAN 通信正常 </translation>
    </message>
    <message>
        <source>EMS warning </source>
        <translation>EMS 警告 </translation>
    </message>
    <message>
        <source>EMS error </source>
        <translation>EMS 错误 </translation>
    </message>
    <message>
        <source>Emergency shutdown</source>
        <translation>紧急关断</translation>
    </message>
    <message>
        <source>nothing active</source>
        <translation>无有效项</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 A</source>
        <translation>%1 A</translation>
    </message>
    <message>
        <source>%1 Ah</source>
        <translation>%1 Ah</translation>
    </message>
    <message>
        <source>%1 Ah/day</source>
        <translation>%1 Ah/天</translation>
    </message>
    <message>
        <source>%1 Wh</source>
        <translation>%1 Wh</translation>
    </message>
    <message>
        <source>%1 Hz</source>
        <translation>%1 Hz</translation>
    </message>
    <message>
        <source>%1 Ohm</source>
        <translation>%1 Ohm</translation>
    </message>
    <message>
        <source>%1 V</source>
        <translation>%1 V</translation>
    </message>
    <message>
        <source>%1 degree</source>
        <translation>%1 度</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 mm</translation>
    </message>
    <message>
        <source>%1 N</source>
        <translation>%1 N</translation>
    </message>
    <message>
        <source>%1 rpm</source>
        <translation>%1 转/分</translation>
    </message>
    <message>
        <source>%1 revolution</source>
        <translation>%1 转</translation>
    </message>
    <message>
        <source>%1 Nm</source>
        <translation>%1 Nm</translation>
    </message>
    <message>
        <source>%1 km/h</source>
        <translation>%1 km/h</translation>
    </message>
    <message>
        <source>%1 bpm</source>
        <translation>%1 次/分</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 °C</source>
        <translation>%1 °C</translation>
    </message>
    <message>
        <source>%1 °C/min</source>
        <translation>%1 °C/min</translation>
    </message>
    <message>
        <source>%1 days</source>
        <translation>%1 天</translation>
    </message>
    <message>
        <source>%1 minutes</source>
        <translation>%1 分钟</translation>
    </message>
</context>
<context>
    <name>DataReader</name>
    <message>
        <source>            &lt;object index=&quot;0x%1&quot; sub=&quot;0x%2&quot; value=&quot;%3&quot; /&gt;
</source>
        <translatorcomment>A line of the exchange file, no text for people: every language keeps it as it is, or the files could not be read any more.</translatorcomment>
        <translation>            &lt;object index=&quot;0x%1&quot; sub=&quot;0x%2&quot; value=&quot;%3&quot; /&gt;
</translation>
    </message>
</context>
<context>
    <name>ExchangeFile</name>
    <message>
        <source>The file is not an exchange file: line %1, column %2 holds XML that exchange files never have (entities, or far too many attributes, levels or namespaces).</source>
        <translation>该文件不是交换文件：第 %1 行第 %2 列含有交换文件中不会出现的 XML（实体，或过多的属性、层级或命名空间）。</translation>
    </message>
    <message>
        <source>There is no node in the file.</source>
        <translation>文件中没有节点。</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>无法写入文件 %1：%2。</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2.</source>
        <translation>无法读取文件 %1：%2。</translation>
    </message>
    <message>
        <source>The file lists far more nodes than a vehicle can have, the first one too many in line %1, column %2.</source>
        <translation>该文件列出的节点远多于一辆车可能拥有的数量，第一个多余的节点位于第 %1 行第 %2 列。</translation>
    </message>
    <message>
        <source>The file is not complete: it ends in line %1, column %2.</source>
        <translation>该文件不完整：在第 %1 行第 %2 列结束。</translation>
    </message>
    <message>
        <source>The file is not XML: line %1, column %2: %3</source>
        <translation>该文件不是 XML：第 %1 行第 %2 列：%3</translation>
    </message>
    <message>
        <source>The file %1 is far too large for an exchange file.</source>
        <translation>文件 %1 过大，不可能是交换文件。</translation>
    </message>
</context>
<context>
    <name>OverviewForm</name>
    <message>
        <source>Form</source>
        <translation>总览</translation>
    </message>
    <message>
        <source>Node-Id</source>
        <translation>节点 ID</translation>
    </message>
    <message>
        <source>NMT-State</source>
        <translation>NMT 状态</translation>
    </message>
    <message>
        <source>DX FSA State</source>
        <translation>DX FSA 状态</translation>
    </message>
    <message>
        <source>Device Parameters (fixed)</source>
        <translation>设备参数（固定）</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>属性</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>值</translation>
    </message>
    <message>
        <source>Actual Values</source>
        <translation>实际值</translation>
    </message>
    <message>
        <source>Scan for devices and read all data from the components</source>
        <translation>搜索设备并读取部件的全部数据</translation>
    </message>
    <message>
        <source>Read all data</source>
        <translation>读取全部数据</translation>
    </message>
    <message>
        <source>Export all data as XML file to later use.</source>
        <translation>将全部数据导出为 XML 文件以便日后使用。</translation>
    </message>
    <message>
        <source>Export </source>
        <translation>导出 </translation>
    </message>
    <message>
        <source>Import exported data</source>
        <translation>导入已导出的数据</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Generate and save a PDF Report of all  data from all devices</source>
        <translation>生成并保存包含所有设备全部数据的 PDF 报告</translation>
    </message>
    <message>
        <source>Save PDF Report</source>
        <translation>保存 PDF 报告</translation>
    </message>
    <message>
        <source>Check for Component update</source>
        <translation>检查部件更新</translation>
    </message>
    <message>
        <source>Draxel Controller/Charger</source>
        <translation>Draxel 控制器/充电器</translation>
    </message>
    <message>
        <source>Draxel Controller</source>
        <translation>Draxel 控制器</translation>
    </message>
    <message>
        <source>Voltage Converter/Charger</source>
        <translation>电压转换器/充电器</translation>
    </message>
    <message>
        <source>Battery Pack</source>
        <translation>电池组</translation>
    </message>
    <message>
        <source>Motor Control unit</source>
        <translation>电机控制器</translation>
    </message>
    <message>
        <source>Load monitoring unit</source>
        <translation>负载监测单元</translation>
    </message>
    <message>
        <source>HMI control unit/display</source>
        <translation>人机界面控制单元/仪表</translation>
    </message>
    <message>
        <source>Security unit</source>
        <translation>防盗单元</translation>
    </message>
    <message>
        <source>Sensor unit</source>
        <translation>传感器单元</translation>
    </message>
    <message>
        <source>Gateway unit</source>
        <translation>网关单元</translation>
    </message>
    <message>
        <source>Generator unit</source>
        <translation>发电机单元</translation>
    </message>
    <message>
        <source>Load unit</source>
        <translation>负载单元</translation>
    </message>
    <message>
        <source>manufacturer-specific device</source>
        <translation>制造商特定设备</translation>
    </message>
    <message>
        <source> External Device </source>
        <translation> 外部设备 </translation>
    </message>
    <message>
        <source> VDN </source>
        <translation> VDN </translation>
    </message>
    <message>
        <source>Implemented specification versions</source>
        <translation>已实现的规范版本</translation>
    </message>
    <message>
        <source>Security Status</source>
        <translation>防盗状态</translation>
    </message>
    <message>
        <source>Battery Pack </source>
        <translation>电池组 </translation>
    </message>
    <message>
        <source> highest temperature</source>
        <translation> 最高温度</translation>
    </message>
    <message>
        <source> sensor </source>
        <translation> 传感器 </translation>
    </message>
    <message>
        <source> temperature</source>
        <translation> 温度</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>电池状态</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>Boot-up</source>
        <translation>启动</translation>
    </message>
    <message>
        <source>Pre-Op</source>
        <translation>预运行</translation>
    </message>
    <message>
        <source>Operational</source>
        <translation>运行</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>停止</translation>
    </message>
    <message>
        <source> external device </source>
        <translation> 外部设备 </translation>
    </message>
    <message>
        <source>Draxel FSA state</source>
        <translation>Draxel FSA 状态</translation>
    </message>
    <message>
        <source>Device Type</source>
        <translation>设备类型</translation>
    </message>
    <message>
        <source>Shows device type information</source>
        <translation>显示设备类型信息</translation>
    </message>
    <message>
        <source>Device information</source>
        <translation>设备信息</translation>
    </message>
    <message>
        <source>Error register</source>
        <translation>错误寄存器</translation>
    </message>
    <message>
        <source>Shows detailed error information</source>
        <translation>显示详细的错误信息</translation>
    </message>
    <message>
        <source>Error field</source>
        <translation>错误记录</translation>
    </message>
    <message>
        <source>Shows last occured errors</source>
        <translation>显示最近发生的错误</translation>
    </message>
    <message>
        <source>Error information</source>
        <translation>错误信息</translation>
    </message>
    <message>
        <source>Shows the implemented specifications</source>
        <translation>显示已实现的规范</translation>
    </message>
    <message>
        <source>Implemented specification</source>
        <translation>已实现的规范</translation>
    </message>
    <message>
        <source>Shows implemented security status</source>
        <translation>显示防盗状态</translation>
    </message>
    <message>
        <source>Draxel Tool XML files (*.dxxml)</source>
        <translation>Draxel Tool XML 文件 (*.dxxml)</translation>
    </message>
    <message>
        <source>No connection to Draxel. Please connect to Draxel and retry.</source>
        <translation>未连接到 Draxel。请连接到 Draxel 后重试。</translation>
    </message>
    <message>
        <source>Export Draxel LEV Network information</source>
        <translation>导出 Draxel LEV 网络信息</translation>
    </message>
    <message>
        <source>Import Draxel LEV Network information</source>
        <translation>导入 Draxel LEV 网络信息</translation>
    </message>
    <message>
        <source>No component selected.</source>
        <translation>未选择部件。</translation>
    </message>
    <message>
        <source>No devices found. Read all data from Draxel or import data from XML file.</source>
        <translation>未找到设备。请从 Draxel 读取全部数据，或从 XML 文件导入数据。</translation>
    </message>
    <message>
        <source>Characters not shown: %1</source>
        <translation>未显示的字符数：%1</translation>
    </message>
    <message>
        <source>Save text</source>
        <translation>保存文本</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>无法写入文件 %1：%2。</translation>
    </message>
    <message>
        <source>Save text...</source>
        <translation>保存文本...</translation>
    </message>
</context>
<context>
    <name>pdfWriter</name>
    <message>
        <source>Draxel FSA state</source>
        <translation>Draxel FSA 状态</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>电池状态</translation>
    </message>
    <message>
        <source>printing broke off, perhaps because the disk is full</source>
        <translation>打印中断，可能是磁盘已满</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>无法写入文件 %1：%2。</translation>
    </message>
</context>
</TS>
