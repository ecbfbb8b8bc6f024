// Made by synth/map.sh from rtl/uart_core.v and rtl/chip_ring.v: edit those.


module uart_core(clk, rst_n, cs_n, wr_n, rd_n, addr, wdata, rxd, cts_n, txd, rts_n, irq, tx_busy, rx_ready, baud_tick, rdata, rdata_oe_n, gpio_out, gpio_oe_n, gpio_in);
  wire [7:0] _000_;
  wire _001_;
  wire _002_;
  wire [7:0] _003_;
  wire _004_;
  wire _005_;
  wire _006_;
  wire _007_;
  wire _008_;
  wire _009_;
  wire _010_;
  wire _011_;
  wire _012_;
  wire _013_;
  wire _014_;
  wire _015_;
  wire _016_;
  wire _017_;
  wire _018_;
  wire _019_;
  wire _020_;
  wire _021_;
  wire _022_;
  wire _023_;
  wire _024_;
  wire _025_;
  wire _026_;
  wire _027_;
  wire _028_;
  wire _029_;
  wire _030_;
  wire _031_;
  wire _032_;
  wire _033_;
  wire _034_;
  wire _035_;
  wire _036_;
  wire _037_;
  wire _038_;
  wire _039_;
  wire _040_;
  wire _041_;
  wire _042_;
  wire _043_;
  wire _044_;
  wire _045_;
  wire _046_;
  wire _047_;
  wire _048_;
  wire _049_;
  wire _050_;
  wire _051_;
  wire _052_;
  wire _053_;
  wire _054_;
  wire _055_;
  wire _056_;
  wire _057_;
  wire _058_;
  wire _059_;
  wire _060_;
  wire _061_;
  wire _062_;
  wire _063_;
  wire _064_;
  wire _065_;
  wire _066_;
  wire _067_;
  wire _068_;
  wire _069_;
  wire _070_;
  wire _071_;
  wire _072_;
  wire _073_;
  wire _074_;
  wire _075_;
  wire _076_;
  wire _077_;
  wire _078_;
  wire _079_;
  wire _080_;
  wire _081_;
  wire _082_;
  wire _083_;
  wire _084_;
  wire _085_;
  wire _086_;
  wire _087_;
  wire _088_;
  wire _089_;
  wire _090_;
  wire _091_;
  wire _092_;
  wire _093_;
  wire _094_;
  wire _095_;
  wire _096_;
  wire _097_;
  wire _098_;
  wire _099_;
  wire _100_;
  wire _101_;
  wire _102_;
  wire _103_;
  wire _104_;
  wire _105_;
  wire _106_;
  wire _107_;
  wire _108_;
  wire _109_;
  wire _110_;
  wire _111_;
  wire _112_;
  wire _113_;
  wire _114_;
  wire _115_;
  wire _116_;
  wire _117_;
  wire _118_;
  wire _119_;
  wire _120_;
  wire _121_;
  wire _122_;
  wire _123_;
  wire _124_;
  wire _125_;
  wire _126_;
  wire _127_;
  wire _128_;
  wire _129_;
  wire _130_;
  wire _131_;
  wire _132_;
  wire _133_;
  wire _134_;
  wire _135_;
  wire _136_;
  wire _137_;
  wire _138_;
  wire _139_;
  wire _140_;
  wire _141_;
  wire _142_;
  wire _143_;
  wire _144_;
  wire _145_;
  wire _146_;
  wire _147_;
  wire _148_;
  wire _149_;
  wire _150_;
  wire _151_;
  wire _152_;
  wire _153_;
  wire _154_;
  wire _155_;
  wire _156_;
  wire _157_;
  wire _158_;
  wire _159_;
  wire _160_;
  wire _161_;
  wire _162_;
  wire _163_;
  wire _164_;
  wire _165_;
  wire _166_;
  wire _167_;
  wire _168_;
  wire _169_;
  wire _170_;
  wire _171_;
  wire _172_;
  wire _173_;
  wire _174_;
  wire _175_;
  wire _176_;
  wire _177_;
  wire _178_;
  wire _179_;
  wire _180_;
  wire _181_;
  wire _182_;
  wire _183_;
  wire _184_;
  wire _185_;
  wire _186_;
  wire _187_;
  wire _188_;
  wire _189_;
  wire _190_;
  wire _191_;
  wire _192_;
  wire _193_;
  wire _194_;
  wire _195_;
  wire _196_;
  wire _197_;
  wire _198_;
  wire _199_;
  wire _200_;
  wire _201_;
  wire _202_;
  wire _203_;
  wire _204_;
  wire _205_;
  wire _206_;
  wire _207_;
  wire _208_;
  wire _209_;
  wire _210_;
  wire _211_;
  wire _212_;
  wire _213_;
  wire _214_;
  wire _215_;
  wire _216_;
  wire _217_;
  wire _218_;
  wire _219_;
  wire _220_;
  wire _221_;
  wire _222_;
  wire _223_;
  wire _224_;
  wire _225_;
  wire _226_;
  wire _227_;
  wire _228_;
  wire _229_;
  wire _230_;
  wire _231_;
  wire _232_;
  wire _233_;
  wire _234_;
  wire _235_;
  wire _236_;
  wire _237_;
  wire _238_;
  wire _239_;
  wire _240_;
  wire _241_;
  wire _242_;
  wire _243_;
  wire _244_;
  wire _245_;
  wire _246_;
  wire _247_;
  wire _248_;
  wire _249_;
  wire _250_;
  wire _251_;
  wire _252_;
  wire _253_;
  wire _254_;
  wire _255_;
  wire _256_;
  wire _257_;
  wire _258_;
  wire _259_;
  wire _260_;
  wire _261_;
  wire _262_;
  wire _263_;
  wire _264_;
  wire _265_;
  wire _266_;
  wire _267_;
  wire _268_;
  wire _269_;
  wire _270_;
  wire _271_;
  wire _272_;
  wire _273_;
  wire _274_;
  wire _275_;
  wire _276_;
  wire _277_;
  wire _278_;
  wire _279_;
  wire _280_;
  wire _281_;
  wire _282_;
  wire _283_;
  wire _284_;
  wire _285_;
  wire _286_;
  wire _287_;
  wire _288_;
  wire _289_;
  wire _290_;
  wire _291_;
  wire _292_;
  wire _293_;
  wire _294_;
  wire _295_;
  wire _296_;
  wire _297_;
  wire _298_;
  wire _299_;
  wire _300_;
  wire _301_;
  wire _302_;
  wire _303_;
  wire _304_;
  wire _305_;
  wire _306_;
  wire _307_;
  wire _308_;
  wire _309_;
  wire _310_;
  wire _311_;
  wire _312_;
  wire _313_;
  wire _314_;
  wire _315_;
  wire _316_;
  wire _317_;
  wire _318_;
  wire _319_;
  wire _320_;
  wire _321_;
  wire _322_;
  wire _323_;
  wire _324_;
  wire _325_;
  wire _326_;
  wire _327_;
  wire _328_;
  wire _329_;
  wire _330_;
  wire _331_;
  wire _332_;
  wire _333_;
  wire _334_;
  wire _335_;
  wire _336_;
  wire _337_;
  wire _338_;
  wire _339_;
  wire _340_;
  wire _341_;
  wire _342_;
  wire _343_;
  wire _344_;
  wire _345_;
  wire _346_;
  wire _347_;
  wire _348_;
  wire _349_;
  wire _350_;
  wire _351_;
  wire _352_;
  wire _353_;
  wire _354_;
  wire _355_;
  wire _356_;
  wire _357_;
  wire _358_;
  wire _359_;
  wire _360_;
  wire _361_;
  wire _362_;
  input [2:0] addr;
  wire [2:0] addr;
  output baud_tick;
  wire baud_tick;
  input clk;
  wire clk;
  wire [2:0] control;
  wire [7:0] counter;
  input cs_n;
  wire cs_n;
  input cts_n;
  wire cts_n;
  wire [1:0] cts_sync;
  wire [7:0] divisor;
  wire [4:0] gpio_drive;
  input [7:0] gpio_in;
  wire [7:0] gpio_in;
  output [4:0] gpio_oe_n;
  wire [4:0] gpio_oe_n;
  output [7:0] gpio_out;
  wire [7:0] gpio_out;
  output irq;
  wire irq;
  input rd_n;
  wire rd_n;
  output [7:0] rdata;
  wire [7:0] rdata;
  output rdata_oe_n;
  wire rdata_oe_n;
  input rst_n;
  wire rst_n;
  output rts_n;
  wire rts_n;
  wire rx_bit;
  wire [7:0] rx_byte;
  wire [7:0] rx_count;
  wire rx_frame;
  wire [3:0] rx_left;
  wire rx_over;
  output rx_ready;
  wire rx_ready;
  wire [7:0] rx_shift;
  input rxd;
  wire rxd;
  wire [1:0] rxd_sync;
  output tx_busy;
  wire tx_busy;
  wire [7:0] tx_count;
  wire [3:0] tx_left;
  wire [8:0] tx_shift;
  output txd;
  wire txd;
  input [7:0] wdata;
  wire [7:0] wdata;
  input wr_n;
  wire wr_n;
  INV _363_ (
    .A(rx_bit),
    .Z(_070_)
  );
  INV _364_ (
    .A(tx_left[0]),
    .Z(_071_)
  );
  INV _365_ (
    .A(tx_left[3]),
    .Z(_072_)
  );
  INV _366_ (
    .A(tx_count[0]),
    .Z(_073_)
  );
  INV _367_ (
    .A(tx_count[3]),
    .Z(_074_)
  );
  INV _368_ (
    .A(tx_count[2]),
    .Z(_075_)
  );
  INV _369_ (
    .A(tx_count[5]),
    .Z(_076_)
  );
  INV _370_ (
    .A(tx_count[4]),
    .Z(_077_)
  );
  INV _371_ (
    .A(tx_count[7]),
    .Z(_078_)
  );
  INV _372_ (
    .A(tx_count[6]),
    .Z(_079_)
  );
  INV _373_ (
    .A(addr[0]),
    .Z(_080_)
  );
  INV _374_ (
    .A(addr[1]),
    .Z(_081_)
  );
  INV _375_ (
    .A(addr[2]),
    .Z(_082_)
  );
  INV _376_ (
    .A(rx_left[0]),
    .Z(_083_)
  );
  INV _377_ (
    .A(rx_left[1]),
    .Z(_084_)
  );
  INV _378_ (
    .A(rx_left[3]),
    .Z(_085_)
  );
  INV _379_ (
    .A(rx_count[1]),
    .Z(_086_)
  );
  INV _380_ (
    .A(rx_count[0]),
    .Z(_087_)
  );
  INV _381_ (
    .A(rx_count[3]),
    .Z(_088_)
  );
  INV _382_ (
    .A(rx_count[2]),
    .Z(_089_)
  );
  INV _383_ (
    .A(rx_count[5]),
    .Z(_090_)
  );
  INV _384_ (
    .A(rx_count[4]),
    .Z(_091_)
  );
  INV _385_ (
    .A(rx_count[7]),
    .Z(_092_)
  );
  INV _386_ (
    .A(rx_count[6]),
    .Z(_093_)
  );
  INV _387_ (
    .A(gpio_drive[0]),
    .Z(gpio_oe_n[0])
  );
  INV _388_ (
    .A(gpio_drive[1]),
    .Z(gpio_oe_n[1])
  );
  INV _389_ (
    .A(counter[2]),
    .Z(_094_)
  );
  INV _390_ (
    .A(gpio_drive[2]),
    .Z(gpio_oe_n[2])
  );
  INV _391_ (
    .A(gpio_drive[3]),
    .Z(gpio_oe_n[3])
  );
  INV _392_ (
    .A(divisor[3]),
    .Z(_095_)
  );
  INV _393_ (
    .A(counter[4]),
    .Z(_096_)
  );
  INV _394_ (
    .A(gpio_drive[4]),
    .Z(gpio_oe_n[4])
  );
  INV _395_ (
    .A(cts_sync[1]),
    .Z(_097_)
  );
  INV _396_ (
    .A(counter[6]),
    .Z(_098_)
  );
  INV _397_ (
    .A(counter[7]),
    .Z(_099_)
  );
  INV _398_ (
    .A(tx_shift[0]),
    .Z(_100_)
  );
  INV _399_ (
    .A(control[2]),
    .Z(rts_n)
  );
  NOR2 _400_ (
    .A(tx_left[1]),
    .B(tx_left[0]),
    .Z(_101_)
  );
  INV _401_ (
    .A(_101_),
    .Z(_102_)
  );
  NOR2 _402_ (
    .A(tx_left[2]),
    .B(_102_),
    .Z(_103_)
  );
  AND2 _403_ (
    .A(_072_),
    .B(_103_),
    .Z(_104_)
  );
  INV _404_ (
    .A(_104_),
    .Z(tx_busy)
  );
  NOR2 _405_ (
    .A(tx_count[1]),
    .B(tx_count[0]),
    .Z(_105_)
  );
  NAND2 _406_ (
    .A(_075_),
    .B(_105_),
    .Z(_106_)
  );
  NOR2 _407_ (
    .A(tx_count[3]),
    .B(_106_),
    .Z(_107_)
  );
  NAND2 _408_ (
    .A(_077_),
    .B(_107_),
    .Z(_108_)
  );
  NOR2 _409_ (
    .A(tx_count[5]),
    .B(_108_),
    .Z(_109_)
  );
  NAND2 _410_ (
    .A(_079_),
    .B(_109_),
    .Z(_110_)
  );
  NOR2 _411_ (
    .A(tx_count[7]),
    .B(_110_),
    .Z(baud_tick)
  );
  NOR2 _412_ (
    .A(addr[0]),
    .B(addr[1]),
    .Z(_111_)
  );
  INV _413_ (
    .A(_111_),
    .Z(_112_)
  );
  NOR2 _414_ (
    .A(addr[2]),
    .B(_112_),
    .Z(_113_)
  );
  NAND2 _415_ (
    .A(rx_byte[0]),
    .B(_113_),
    .Z(_114_)
  );
  NOR2 _416_ (
    .A(_082_),
    .B(_112_),
    .Z(_115_)
  );
  NAND2 _417_ (
    .A(gpio_drive[0]),
    .B(_115_),
    .Z(_116_)
  );
  NAND2 _418_ (
    .A(_080_),
    .B(addr[1]),
    .Z(_117_)
  );
  NOR2 _419_ (
    .A(addr[2]),
    .B(_117_),
    .Z(_118_)
  );
  NAND2 _420_ (
    .A(divisor[0]),
    .B(_118_),
    .Z(_119_)
  );
  NAND2 _421_ (
    .A(addr[0]),
    .B(_081_),
    .Z(_120_)
  );
  NOR2 _422_ (
    .A(addr[2]),
    .B(_120_),
    .Z(_121_)
  );
  NAND2 _423_ (
    .A(rx_ready),
    .B(_121_),
    .Z(_122_)
  );
  NOR2 _424_ (
    .A(_082_),
    .B(_120_),
    .Z(_123_)
  );
  NAND2 _425_ (
    .A(gpio_in[0]),
    .B(_123_),
    .Z(_124_)
  );
  NAND2 _426_ (
    .A(_122_),
    .B(_124_),
    .Z(_125_)
  );
  NAND2 _427_ (
    .A(addr[0]),
    .B(addr[1]),
    .Z(_126_)
  );
  OR2 _428_ (
    .A(_082_),
    .B(_126_),
    .Z(_127_)
  );
  NOR2 _429_ (
    .A(addr[2]),
    .B(_126_),
    .Z(_128_)
  );
  NAND2 _430_ (
    .A(gpio_out[0]),
    .B(_128_),
    .Z(_129_)
  );
  NAND2 _431_ (
    .A(_127_),
    .B(_129_),
    .Z(_130_)
  );
  NOR2 _432_ (
    .A(_082_),
    .B(_117_),
    .Z(_131_)
  );
  NAND2 _433_ (
    .A(counter[0]),
    .B(_131_),
    .Z(_132_)
  );
  NAND2 _434_ (
    .A(_114_),
    .B(_116_),
    .Z(_133_)
  );
  NOR2 _435_ (
    .A(_130_),
    .B(_133_),
    .Z(_134_)
  );
  NAND2 _436_ (
    .A(_119_),
    .B(_132_),
    .Z(_135_)
  );
  NOR2 _437_ (
    .A(_125_),
    .B(_135_),
    .Z(_136_)
  );
  NAND2 _438_ (
    .A(_134_),
    .B(_136_),
    .Z(rdata[0])
  );
  NAND2 _439_ (
    .A(gpio_in[1]),
    .B(_123_),
    .Z(_137_)
  );
  NAND2 _440_ (
    .A(divisor[1]),
    .B(_118_),
    .Z(_138_)
  );
  NAND2 _441_ (
    .A(counter[1]),
    .B(_131_),
    .Z(_139_)
  );
  AND2 _442_ (
    .A(rx_byte[1]),
    .B(_113_),
    .Z(_140_)
  );
  NAND2 _443_ (
    .A(tx_busy),
    .B(_121_),
    .Z(_141_)
  );
  NAND2 _444_ (
    .A(gpio_out[1]),
    .B(_128_),
    .Z(_142_)
  );
  NAND2 _445_ (
    .A(gpio_drive[1]),
    .B(_115_),
    .Z(_143_)
  );
  NAND2 _446_ (
    .A(_139_),
    .B(_141_),
    .Z(_144_)
  );
  NOR2 _447_ (
    .A(_140_),
    .B(_144_),
    .Z(_145_)
  );
  NAND2 _448_ (
    .A(_138_),
    .B(_143_),
    .Z(_146_)
  );
  NAND2 _449_ (
    .A(_137_),
    .B(_142_),
    .Z(_147_)
  );
  NOR2 _450_ (
    .A(_146_),
    .B(_147_),
    .Z(_148_)
  );
  NAND2 _451_ (
    .A(_145_),
    .B(_148_),
    .Z(rdata[1])
  );
  NAND2 _452_ (
    .A(rx_byte[2]),
    .B(_113_),
    .Z(_149_)
  );
  NAND2 _453_ (
    .A(counter[2]),
    .B(_131_),
    .Z(_150_)
  );
  NAND2 _454_ (
    .A(_149_),
    .B(_150_),
    .Z(_151_)
  );
  NAND2 _455_ (
    .A(rx_frame),
    .B(_121_),
    .Z(_152_)
  );
  NAND2 _456_ (
    .A(gpio_in[2]),
    .B(_123_),
    .Z(_153_)
  );
  NAND2 _457_ (
    .A(_152_),
    .B(_153_),
    .Z(_154_)
  );
  NOR2 _458_ (
    .A(_151_),
    .B(_154_),
    .Z(_155_)
  );
  NAND2 _459_ (
    .A(gpio_drive[2]),
    .B(_115_),
    .Z(_156_)
  );
  NAND2 _460_ (
    .A(_127_),
    .B(_156_),
    .Z(_157_)
  );
  NAND2 _461_ (
    .A(gpio_out[2]),
    .B(_128_),
    .Z(_158_)
  );
  NAND2 _462_ (
    .A(divisor[2]),
    .B(_118_),
    .Z(_159_)
  );
  NAND2 _463_ (
    .A(_158_),
    .B(_159_),
    .Z(_160_)
  );
  NOR2 _464_ (
    .A(_157_),
    .B(_160_),
    .Z(_161_)
  );
  NAND2 _465_ (
    .A(_155_),
    .B(_161_),
    .Z(rdata[2])
  );
  AND2 _466_ (
    .A(counter[3]),
    .B(_131_),
    .Z(_162_)
  );
  NAND2 _467_ (
    .A(gpio_out[3]),
    .B(_128_),
    .Z(_163_)
  );
  NAND2 _468_ (
    .A(rx_byte[3]),
    .B(_113_),
    .Z(_164_)
  );
  NAND2 _469_ (
    .A(_163_),
    .B(_164_),
    .Z(_165_)
  );
  NOR2 _470_ (
    .A(_162_),
    .B(_165_),
    .Z(_166_)
  );
  NAND2 _471_ (
    .A(rx_over),
    .B(_121_),
    .Z(_167_)
  );
  NAND2 _472_ (
    .A(divisor[3]),
    .B(_118_),
    .Z(_168_)
  );
  NAND2 _473_ (
    .A(_167_),
    .B(_168_),
    .Z(_169_)
  );
  NAND2 _474_ (
    .A(gpio_in[3]),
    .B(_123_),
    .Z(_170_)
  );
  NAND2 _475_ (
    .A(gpio_drive[3]),
    .B(_115_),
    .Z(_171_)
  );
  NAND2 _476_ (
    .A(_170_),
    .B(_171_),
    .Z(_172_)
  );
  NOR2 _477_ (
    .A(_169_),
    .B(_172_),
    .Z(_173_)
  );
  NAND2 _478_ (
    .A(_166_),
    .B(_173_),
    .Z(rdata[3])
  );
  NAND2 _479_ (
    .A(rx_byte[4]),
    .B(_113_),
    .Z(_174_)
  );
  NAND2 _480_ (
    .A(counter[4]),
    .B(_131_),
    .Z(_175_)
  );
  NAND2 _481_ (
    .A(_174_),
    .B(_175_),
    .Z(_176_)
  );
  NAND2 _482_ (
    .A(_097_),
    .B(_121_),
    .Z(_177_)
  );
  NAND2 _483_ (
    .A(gpio_in[4]),
    .B(_123_),
    .Z(_178_)
  );
  NAND2 _484_ (
    .A(_177_),
    .B(_178_),
    .Z(_179_)
  );
  NOR2 _485_ (
    .A(_176_),
    .B(_179_),
    .Z(_180_)
  );
  NAND2 _486_ (
    .A(gpio_drive[4]),
    .B(_115_),
    .Z(_181_)
  );
  NAND2 _487_ (
    .A(_127_),
    .B(_181_),
    .Z(_182_)
  );
  NAND2 _488_ (
    .A(gpio_out[4]),
    .B(_128_),
    .Z(_183_)
  );
  NAND2 _489_ (
    .A(divisor[4]),
    .B(_118_),
    .Z(_184_)
  );
  NAND2 _490_ (
    .A(_183_),
    .B(_184_),
    .Z(_185_)
  );
  NOR2 _491_ (
    .A(_182_),
    .B(_185_),
    .Z(_186_)
  );
  NAND2 _492_ (
    .A(_180_),
    .B(_186_),
    .Z(rdata[4])
  );
  NAND2 _493_ (
    .A(divisor[5]),
    .B(_118_),
    .Z(_187_)
  );
  NAND2 _494_ (
    .A(gpio_in[5]),
    .B(_123_),
    .Z(_188_)
  );
  AND2 _495_ (
    .A(gpio_out[5]),
    .B(_128_),
    .Z(_189_)
  );
  NAND2 _496_ (
    .A(counter[5]),
    .B(_131_),
    .Z(_190_)
  );
  NAND2 _497_ (
    .A(rx_byte[5]),
    .B(_113_),
    .Z(_191_)
  );
  AND2 _498_ (
    .A(_187_),
    .B(_190_),
    .Z(_192_)
  );
  NAND2 _499_ (
    .A(_188_),
    .B(_191_),
    .Z(_193_)
  );
  NOR2 _500_ (
    .A(_189_),
    .B(_193_),
    .Z(_194_)
  );
  NAND2 _501_ (
    .A(_192_),
    .B(_194_),
    .Z(rdata[5])
  );
  NAND2 _502_ (
    .A(divisor[6]),
    .B(_118_),
    .Z(_195_)
  );
  NOR2 _503_ (
    .A(addr[2]),
    .B(gpio_out[6]),
    .Z(_196_)
  );
  NOR2 _504_ (
    .A(_126_),
    .B(_196_),
    .Z(_197_)
  );
  AND2 _505_ (
    .A(rx_byte[6]),
    .B(_113_),
    .Z(_198_)
  );
  NAND2 _506_ (
    .A(counter[6]),
    .B(_131_),
    .Z(_199_)
  );
  AND2 _507_ (
    .A(gpio_in[6]),
    .B(_123_),
    .Z(_200_)
  );
  NAND2 _508_ (
    .A(_195_),
    .B(_199_),
    .Z(_201_)
  );
  NOR2 _509_ (
    .A(_198_),
    .B(_201_),
    .Z(_202_)
  );
  NOR2 _510_ (
    .A(_197_),
    .B(_200_),
    .Z(_203_)
  );
  NAND2 _511_ (
    .A(_202_),
    .B(_203_),
    .Z(rdata[6])
  );
  NAND2 _512_ (
    .A(divisor[7]),
    .B(_118_),
    .Z(_204_)
  );
  NAND2 _513_ (
    .A(gpio_in[7]),
    .B(_123_),
    .Z(_205_)
  );
  AND2 _514_ (
    .A(rx_byte[7]),
    .B(_113_),
    .Z(_206_)
  );
  NAND2 _515_ (
    .A(counter[7]),
    .B(_131_),
    .Z(_207_)
  );
  NAND2 _516_ (
    .A(gpio_out[7]),
    .B(_128_),
    .Z(_208_)
  );
  AND2 _517_ (
    .A(_204_),
    .B(_207_),
    .Z(_209_)
  );
  NAND2 _518_ (
    .A(_205_),
    .B(_208_),
    .Z(_210_)
  );
  NOR2 _519_ (
    .A(_206_),
    .B(_210_),
    .Z(_211_)
  );
  NAND2 _520_ (
    .A(_209_),
    .B(_211_),
    .Z(rdata[7])
  );
  NOR2 _521_ (
    .A(wr_n),
    .B(cs_n),
    .Z(_212_)
  );
  AND2 _522_ (
    .A(_131_),
    .B(_212_),
    .Z(_213_)
  );
  NAND2 _523_ (
    .A(_131_),
    .B(_212_),
    .Z(_214_)
  );
  NOR2 _524_ (
    .A(counter[0]),
    .B(_213_),
    .Z(_000_[0])
  );
  NOR2 _525_ (
    .A(counter[0]),
    .B(counter[1]),
    .Z(_215_)
  );
  NAND2 _526_ (
    .A(counter[0]),
    .B(counter[1]),
    .Z(_216_)
  );
  NAND2 _527_ (
    .A(_214_),
    .B(_216_),
    .Z(_217_)
  );
  NOR2 _528_ (
    .A(_215_),
    .B(_217_),
    .Z(_000_[1])
  );
  NOR2 _529_ (
    .A(_094_),
    .B(_216_),
    .Z(_218_)
  );
  XOR2 _530_ (
    .A(counter[2]),
    .B(_216_),
    .Z(_219_)
  );
  NOR2 _531_ (
    .A(_213_),
    .B(_219_),
    .Z(_000_[2])
  );
  NAND2 _532_ (
    .A(counter[3]),
    .B(_218_),
    .Z(_220_)
  );
  NOR2 _533_ (
    .A(counter[3]),
    .B(_218_),
    .Z(_221_)
  );
  NOR2 _534_ (
    .A(_213_),
    .B(_221_),
    .Z(_222_)
  );
  AND2 _535_ (
    .A(_220_),
    .B(_222_),
    .Z(_000_[3])
  );
  NOR2 _536_ (
    .A(_096_),
    .B(_220_),
    .Z(_223_)
  );
  NAND2 _537_ (
    .A(_096_),
    .B(_220_),
    .Z(_224_)
  );
  NAND2 _538_ (
    .A(_214_),
    .B(_224_),
    .Z(_225_)
  );
  NOR2 _539_ (
    .A(_223_),
    .B(_225_),
    .Z(_000_[4])
  );
  NAND2 _540_ (
    .A(counter[5]),
    .B(_223_),
    .Z(_226_)
  );
  NOR2 _541_ (
    .A(counter[5]),
    .B(_223_),
    .Z(_227_)
  );
  NOR2 _542_ (
    .A(_213_),
    .B(_227_),
    .Z(_228_)
  );
  AND2 _543_ (
    .A(_226_),
    .B(_228_),
    .Z(_000_[5])
  );
  NOR2 _544_ (
    .A(_098_),
    .B(_226_),
    .Z(_229_)
  );
  NAND2 _545_ (
    .A(_098_),
    .B(_226_),
    .Z(_230_)
  );
  NAND2 _546_ (
    .A(_214_),
    .B(_230_),
    .Z(_231_)
  );
  NOR2 _547_ (
    .A(_229_),
    .B(_231_),
    .Z(_000_[6])
  );
  XOR2 _548_ (
    .A(_099_),
    .B(_229_),
    .Z(_232_)
  );
  NOR2 _549_ (
    .A(_213_),
    .B(_232_),
    .Z(_000_[7])
  );
  NOR2 _550_ (
    .A(cs_n),
    .B(rd_n),
    .Z(_233_)
  );
  INV _551_ (
    .A(_233_),
    .Z(rdata_oe_n)
  );
  NOR2 _552_ (
    .A(rx_count[1]),
    .B(rx_count[0]),
    .Z(_234_)
  );
  NAND2 _553_ (
    .A(_089_),
    .B(_234_),
    .Z(_235_)
  );
  NOR2 _554_ (
    .A(rx_count[3]),
    .B(_235_),
    .Z(_236_)
  );
  AND2 _555_ (
    .A(_091_),
    .B(_236_),
    .Z(_237_)
  );
  NAND2 _556_ (
    .A(_090_),
    .B(_237_),
    .Z(_238_)
  );
  NOR2 _557_ (
    .A(rx_count[6]),
    .B(_238_),
    .Z(_239_)
  );
  NAND2 _558_ (
    .A(_092_),
    .B(_239_),
    .Z(_240_)
  );
  NOR2 _559_ (
    .A(rx_left[1]),
    .B(rx_left[2]),
    .Z(_241_)
  );
  NOR2 _560_ (
    .A(_083_),
    .B(rx_left[3]),
    .Z(_242_)
  );
  NAND2 _561_ (
    .A(_241_),
    .B(_242_),
    .Z(_243_)
  );
  NOR2 _562_ (
    .A(_240_),
    .B(_243_),
    .Z(_244_)
  );
  INV _563_ (
    .A(_244_),
    .Z(_245_)
  );
  NAND2 _564_ (
    .A(_113_),
    .B(_233_),
    .Z(_246_)
  );
  AND2 _565_ (
    .A(rx_over),
    .B(_246_),
    .Z(_247_)
  );
  MUX2 _566_ (
    .D0(_247_),
    .D1(rx_ready),
    .S(_244_),
    .Z(_002_)
  );
  NAND2 _567_ (
    .A(rx_ready),
    .B(_246_),
    .Z(_248_)
  );
  NAND2 _568_ (
    .A(_245_),
    .B(_248_),
    .Z(_001_)
  );
  AND2 _569_ (
    .A(_113_),
    .B(_212_),
    .Z(_249_)
  );
  AND2 _570_ (
    .A(_104_),
    .B(_249_),
    .Z(_250_)
  );
  NAND2 _571_ (
    .A(_104_),
    .B(_249_),
    .Z(_251_)
  );
  NAND2 _572_ (
    .A(_110_),
    .B(_251_),
    .Z(_252_)
  );
  NOR2 _573_ (
    .A(_078_),
    .B(_250_),
    .Z(_253_)
  );
  NOR2 _574_ (
    .A(baud_tick),
    .B(_250_),
    .Z(_254_)
  );
  INV _575_ (
    .A(_254_),
    .Z(_255_)
  );
  MUX2 _576_ (
    .D0(divisor[0]),
    .D1(_073_),
    .S(_254_),
    .Z(_003_[0])
  );
  XOR2 _577_ (
    .A(tx_count[1]),
    .B(_073_),
    .Z(_256_)
  );
  MUX2 _578_ (
    .D0(divisor[1]),
    .D1(_256_),
    .S(_254_),
    .Z(_003_[1])
  );
  XOR2 _579_ (
    .A(tx_count[2]),
    .B(_105_),
    .Z(_257_)
  );
  MUX2 _580_ (
    .D0(divisor[2]),
    .D1(_257_),
    .S(_254_),
    .Z(_003_[2])
  );
  XOR2 _581_ (
    .A(_074_),
    .B(_106_),
    .Z(_258_)
  );
  MUX2 _582_ (
    .D0(divisor[3]),
    .D1(_258_),
    .S(_254_),
    .Z(_003_[3])
  );
  XOR2 _583_ (
    .A(tx_count[4]),
    .B(_107_),
    .Z(_259_)
  );
  MUX2 _584_ (
    .D0(divisor[4]),
    .D1(_259_),
    .S(_254_),
    .Z(_003_[4])
  );
  XOR2 _585_ (
    .A(_076_),
    .B(_108_),
    .Z(_260_)
  );
  MUX2 _586_ (
    .D0(divisor[5]),
    .D1(_260_),
    .S(_254_),
    .Z(_003_[5])
  );
  OR2 _587_ (
    .A(divisor[6]),
    .B(_253_),
    .Z(_261_)
  );
  NAND2 _588_ (
    .A(_252_),
    .B(_261_),
    .Z(_262_)
  );
  NOR2 _589_ (
    .A(_079_),
    .B(_109_),
    .Z(_263_)
  );
  NAND2 _590_ (
    .A(_251_),
    .B(_263_),
    .Z(_264_)
  );
  NAND2 _591_ (
    .A(_262_),
    .B(_264_),
    .Z(_003_[6])
  );
  NAND2 _592_ (
    .A(divisor[7]),
    .B(_255_),
    .Z(_265_)
  );
  NAND2 _593_ (
    .A(_110_),
    .B(_253_),
    .Z(_266_)
  );
  NAND2 _594_ (
    .A(_265_),
    .B(_266_),
    .Z(_003_[7])
  );
  NAND2 _595_ (
    .A(control[1]),
    .B(_104_),
    .Z(_267_)
  );
  NAND2 _596_ (
    .A(rx_ready),
    .B(control[0]),
    .Z(_268_)
  );
  NAND2 _597_ (
    .A(_267_),
    .B(_268_),
    .Z(irq)
  );
  NAND2 _598_ (
    .A(_121_),
    .B(_212_),
    .Z(_269_)
  );
  MUX2 _599_ (
    .D0(wdata[0]),
    .D1(control[0]),
    .S(_269_),
    .Z(_004_)
  );
  MUX2 _600_ (
    .D0(wdata[1]),
    .D1(control[1]),
    .S(_269_),
    .Z(_005_)
  );
  MUX2 _601_ (
    .D0(wdata[2]),
    .D1(control[2]),
    .S(_269_),
    .Z(_006_)
  );
  MUX2 _602_ (
    .D0(baud_tick),
    .D1(_249_),
    .S(_104_),
    .Z(_270_)
  );
  MUX2 _603_ (
    .D0(tx_shift[1]),
    .D1(wdata[0]),
    .S(_250_),
    .Z(_271_)
  );
  MUX2 _604_ (
    .D0(tx_shift[0]),
    .D1(_271_),
    .S(_270_),
    .Z(_007_)
  );
  MUX2 _605_ (
    .D0(tx_shift[2]),
    .D1(wdata[1]),
    .S(_250_),
    .Z(_272_)
  );
  MUX2 _606_ (
    .D0(tx_shift[1]),
    .D1(_272_),
    .S(_270_),
    .Z(_008_)
  );
  MUX2 _607_ (
    .D0(tx_shift[3]),
    .D1(wdata[2]),
    .S(_250_),
    .Z(_273_)
  );
  MUX2 _608_ (
    .D0(tx_shift[2]),
    .D1(_273_),
    .S(_270_),
    .Z(_009_)
  );
  MUX2 _609_ (
    .D0(tx_shift[4]),
    .D1(wdata[3]),
    .S(_250_),
    .Z(_274_)
  );
  MUX2 _610_ (
    .D0(tx_shift[3]),
    .D1(_274_),
    .S(_270_),
    .Z(_010_)
  );
  MUX2 _611_ (
    .D0(tx_shift[5]),
    .D1(wdata[4]),
    .S(_250_),
    .Z(_275_)
  );
  MUX2 _612_ (
    .D0(tx_shift[4]),
    .D1(_275_),
    .S(_270_),
    .Z(_011_)
  );
  MUX2 _613_ (
    .D0(tx_shift[6]),
    .D1(wdata[5]),
    .S(_250_),
    .Z(_276_)
  );
  MUX2 _614_ (
    .D0(tx_shift[5]),
    .D1(_276_),
    .S(_270_),
    .Z(_012_)
  );
  MUX2 _615_ (
    .D0(tx_shift[7]),
    .D1(wdata[6]),
    .S(_250_),
    .Z(_277_)
  );
  MUX2 _616_ (
    .D0(tx_shift[6]),
    .D1(_277_),
    .S(_270_),
    .Z(_013_)
  );
  NOR2 _617_ (
    .A(wdata[7]),
    .B(_251_),
    .Z(_278_)
  );
  NOR2 _618_ (
    .A(tx_shift[7]),
    .B(_270_),
    .Z(_279_)
  );
  NOR2 _619_ (
    .A(_278_),
    .B(_279_),
    .Z(_014_)
  );
  NOR2 _620_ (
    .A(divisor[0]),
    .B(_240_),
    .Z(_280_)
  );
  AND2 _621_ (
    .A(_083_),
    .B(_241_),
    .Z(_281_)
  );
  AND2 _622_ (
    .A(_085_),
    .B(_281_),
    .Z(_282_)
  );
  NAND2 _623_ (
    .A(_085_),
    .B(_281_),
    .Z(_283_)
  );
  NAND2 _624_ (
    .A(_087_),
    .B(_283_),
    .Z(_284_)
  );
  NOR2 _625_ (
    .A(_280_),
    .B(_284_),
    .Z(_285_)
  );
  NOR2 _626_ (
    .A(rx_bit),
    .B(_283_),
    .Z(_286_)
  );
  NAND2 _627_ (
    .A(divisor[1]),
    .B(_286_),
    .Z(_287_)
  );
  NAND2 _628_ (
    .A(rx_bit),
    .B(_282_),
    .Z(_288_)
  );
  NOR2 _629_ (
    .A(_087_),
    .B(_288_),
    .Z(_289_)
  );
  NOR2 _630_ (
    .A(_285_),
    .B(_289_),
    .Z(_290_)
  );
  NAND2 _631_ (
    .A(_287_),
    .B(_290_),
    .Z(_015_)
  );
  XOR2 _632_ (
    .A(rx_count[1]),
    .B(rx_count[0]),
    .Z(_291_)
  );
  NOR2 _633_ (
    .A(divisor[1]),
    .B(_240_),
    .Z(_292_)
  );
  NOR2 _634_ (
    .A(_291_),
    .B(_292_),
    .Z(_293_)
  );
  NAND2 _635_ (
    .A(_283_),
    .B(_293_),
    .Z(_294_)
  );
  AND2 _636_ (
    .A(divisor[2]),
    .B(_286_),
    .Z(_295_)
  );
  NOR2 _637_ (
    .A(_086_),
    .B(_288_),
    .Z(_296_)
  );
  NOR2 _638_ (
    .A(_295_),
    .B(_296_),
    .Z(_297_)
  );
  NAND2 _639_ (
    .A(_294_),
    .B(_297_),
    .Z(_016_)
  );
  XOR2 _640_ (
    .A(rx_count[2]),
    .B(_234_),
    .Z(_298_)
  );
  MUX2 _641_ (
    .D0(divisor[2]),
    .D1(_298_),
    .S(_240_),
    .Z(_299_)
  );
  NAND2 _642_ (
    .A(_283_),
    .B(_299_),
    .Z(_300_)
  );
  AND2 _643_ (
    .A(divisor[3]),
    .B(_286_),
    .Z(_301_)
  );
  NOR2 _644_ (
    .A(_089_),
    .B(_288_),
    .Z(_302_)
  );
  NOR2 _645_ (
    .A(_301_),
    .B(_302_),
    .Z(_303_)
  );
  NAND2 _646_ (
    .A(_300_),
    .B(_303_),
    .Z(_017_)
  );
  XOR2 _647_ (
    .A(rx_count[3]),
    .B(_235_),
    .Z(_304_)
  );
  MUX2 _648_ (
    .D0(_095_),
    .D1(_304_),
    .S(_240_),
    .Z(_305_)
  );
  NOR2 _649_ (
    .A(_282_),
    .B(_305_),
    .Z(_306_)
  );
  NAND2 _650_ (
    .A(divisor[4]),
    .B(_286_),
    .Z(_307_)
  );
  NOR2 _651_ (
    .A(_088_),
    .B(_288_),
    .Z(_308_)
  );
  NOR2 _652_ (
    .A(_306_),
    .B(_308_),
    .Z(_309_)
  );
  NAND2 _653_ (
    .A(_307_),
    .B(_309_),
    .Z(_018_)
  );
  NOR2 _654_ (
    .A(divisor[4]),
    .B(_240_),
    .Z(_310_)
  );
  XOR2 _655_ (
    .A(_091_),
    .B(_236_),
    .Z(_311_)
  );
  NOR2 _656_ (
    .A(_310_),
    .B(_311_),
    .Z(_312_)
  );
  NAND2 _657_ (
    .A(_283_),
    .B(_312_),
    .Z(_313_)
  );
  NOR2 _658_ (
    .A(_091_),
    .B(_288_),
    .Z(_314_)
  );
  AND2 _659_ (
    .A(divisor[5]),
    .B(_286_),
    .Z(_315_)
  );
  NOR2 _660_ (
    .A(_314_),
    .B(_315_),
    .Z(_316_)
  );
  NAND2 _661_ (
    .A(_313_),
    .B(_316_),
    .Z(_019_)
  );
  NOR2 _662_ (
    .A(divisor[5]),
    .B(_240_),
    .Z(_317_)
  );
  XOR2 _663_ (
    .A(rx_count[5]),
    .B(_237_),
    .Z(_318_)
  );
  NAND2 _664_ (
    .A(_283_),
    .B(_318_),
    .Z(_319_)
  );
  NOR2 _665_ (
    .A(_317_),
    .B(_319_),
    .Z(_320_)
  );
  NAND2 _666_ (
    .A(divisor[6]),
    .B(_286_),
    .Z(_321_)
  );
  NOR2 _667_ (
    .A(_090_),
    .B(_288_),
    .Z(_322_)
  );
  NOR2 _668_ (
    .A(_320_),
    .B(_322_),
    .Z(_323_)
  );
  NAND2 _669_ (
    .A(_321_),
    .B(_323_),
    .Z(_020_)
  );
  NOR2 _670_ (
    .A(_238_),
    .B(_282_),
    .Z(_324_)
  );
  NAND2 _671_ (
    .A(_093_),
    .B(_324_),
    .Z(_325_)
  );
  NOR2 _672_ (
    .A(rx_count[7]),
    .B(divisor[6]),
    .Z(_326_)
  );
  NOR2 _673_ (
    .A(_325_),
    .B(_326_),
    .Z(_327_)
  );
  NOR2 _674_ (
    .A(_093_),
    .B(_324_),
    .Z(_328_)
  );
  MUX2 _675_ (
    .D0(_328_),
    .D1(divisor[7]),
    .S(_286_),
    .Z(_329_)
  );
  OR2 _676_ (
    .A(_327_),
    .B(_329_),
    .Z(_021_)
  );
  NOR2 _677_ (
    .A(_092_),
    .B(_286_),
    .Z(_330_)
  );
  NAND2 _678_ (
    .A(_325_),
    .B(_330_),
    .Z(_331_)
  );
  NOR2 _679_ (
    .A(_240_),
    .B(_282_),
    .Z(_332_)
  );
  NAND2 _680_ (
    .A(divisor[7]),
    .B(_332_),
    .Z(_333_)
  );
  NAND2 _681_ (
    .A(_331_),
    .B(_333_),
    .Z(_022_)
  );
  NOR2 _682_ (
    .A(rx_left[2]),
    .B(_085_),
    .Z(_334_)
  );
  NOR2 _683_ (
    .A(rx_left[0]),
    .B(_084_),
    .Z(_335_)
  );
  AND2 _684_ (
    .A(_334_),
    .B(_335_),
    .Z(_336_)
  );
  INV _685_ (
    .A(_336_),
    .Z(_337_)
  );
  AND2 _686_ (
    .A(_332_),
    .B(_337_),
    .Z(_338_)
  );
  NAND2 _687_ (
    .A(_243_),
    .B(_338_),
    .Z(_339_)
  );
  MUX2 _688_ (
    .D0(rx_shift[1]),
    .D1(rx_shift[0]),
    .S(_339_),
    .Z(_023_)
  );
  MUX2 _689_ (
    .D0(rx_shift[2]),
    .D1(rx_shift[1]),
    .S(_339_),
    .Z(_024_)
  );
  MUX2 _690_ (
    .D0(rx_shift[3]),
    .D1(rx_shift[2]),
    .S(_339_),
    .Z(_025_)
  );
  MUX2 _691_ (
    .D0(rx_shift[4]),
    .D1(rx_shift[3]),
    .S(_339_),
    .Z(_026_)
  );
  MUX2 _692_ (
    .D0(rx_shift[5]),
    .D1(rx_shift[4]),
    .S(_339_),
    .Z(_027_)
  );
  MUX2 _693_ (
    .D0(rx_shift[6]),
    .D1(rx_shift[5]),
    .S(_339_),
    .Z(_028_)
  );
  MUX2 _694_ (
    .D0(rx_shift[7]),
    .D1(rx_shift[6]),
    .S(_339_),
    .Z(_029_)
  );
  MUX2 _695_ (
    .D0(rx_bit),
    .D1(rx_shift[7]),
    .S(_339_),
    .Z(_030_)
  );
  MUX2 _696_ (
    .D0(rx_byte[0]),
    .D1(rx_shift[0]),
    .S(_244_),
    .Z(_031_)
  );
  MUX2 _697_ (
    .D0(rx_byte[1]),
    .D1(rx_shift[1]),
    .S(_244_),
    .Z(_032_)
  );
  MUX2 _698_ (
    .D0(rx_byte[2]),
    .D1(rx_shift[2]),
    .S(_244_),
    .Z(_033_)
  );
  MUX2 _699_ (
    .D0(rx_byte[3]),
    .D1(rx_shift[3]),
    .S(_244_),
    .Z(_034_)
  );
  MUX2 _700_ (
    .D0(rx_byte[4]),
    .D1(rx_shift[4]),
    .S(_244_),
    .Z(_035_)
  );
  MUX2 _701_ (
    .D0(rx_byte[5]),
    .D1(rx_shift[5]),
    .S(_244_),
    .Z(_036_)
  );
  MUX2 _702_ (
    .D0(rx_byte[6]),
    .D1(rx_shift[6]),
    .S(_244_),
    .Z(_037_)
  );
  MUX2 _703_ (
    .D0(rx_byte[7]),
    .D1(rx_shift[7]),
    .S(_244_),
    .Z(_038_)
  );
  NOR2 _704_ (
    .A(rx_left[0]),
    .B(_332_),
    .Z(_340_)
  );
  MUX2 _705_ (
    .D0(rx_bit),
    .D1(_240_),
    .S(_283_),
    .Z(_341_)
  );
  NOR2 _706_ (
    .A(_070_),
    .B(_337_),
    .Z(_342_)
  );
  NOR2 _707_ (
    .A(rx_left[0]),
    .B(_342_),
    .Z(_343_)
  );
  NOR2 _708_ (
    .A(_341_),
    .B(_343_),
    .Z(_344_)
  );
  NOR2 _709_ (
    .A(_340_),
    .B(_344_),
    .Z(_039_)
  );
  NOR2 _710_ (
    .A(rx_left[0]),
    .B(_341_),
    .Z(_345_)
  );
  NAND2 _711_ (
    .A(_084_),
    .B(_345_),
    .Z(_346_)
  );
  XOR2 _712_ (
    .A(rx_left[1]),
    .B(_345_),
    .Z(_040_)
  );
  MUX2 _713_ (
    .D0(_334_),
    .D1(rx_left[2]),
    .S(_346_),
    .Z(_041_)
  );
  XOR2 _714_ (
    .A(rx_left[3]),
    .B(_281_),
    .Z(_347_)
  );
  NOR2 _715_ (
    .A(_341_),
    .B(_342_),
    .Z(_348_)
  );
  NAND2 _716_ (
    .A(_347_),
    .B(_348_),
    .Z(_349_)
  );
  NAND2 _717_ (
    .A(rx_left[3]),
    .B(_240_),
    .Z(_350_)
  );
  NAND2 _718_ (
    .A(_349_),
    .B(_350_),
    .Z(_042_)
  );
  MUX2 _719_ (
    .D0(rx_frame),
    .D1(_070_),
    .S(_244_),
    .Z(_043_)
  );
  NOR2 _720_ (
    .A(_100_),
    .B(_104_),
    .Z(_351_)
  );
  MUX2 _721_ (
    .D0(txd),
    .D1(_351_),
    .S(_270_),
    .Z(_044_)
  );
  NOR2 _722_ (
    .A(_071_),
    .B(_270_),
    .Z(_352_)
  );
  NAND2 _723_ (
    .A(_071_),
    .B(_270_),
    .Z(_353_)
  );
  NOR2 _724_ (
    .A(_250_),
    .B(_353_),
    .Z(_354_)
  );
  OR2 _725_ (
    .A(_352_),
    .B(_354_),
    .Z(_045_)
  );
  NAND2 _726_ (
    .A(tx_left[1]),
    .B(_353_),
    .Z(_355_)
  );
  NAND2 _727_ (
    .A(_101_),
    .B(_270_),
    .Z(_356_)
  );
  NAND2 _728_ (
    .A(_355_),
    .B(_356_),
    .Z(_046_)
  );
  NAND2 _729_ (
    .A(_103_),
    .B(_270_),
    .Z(_357_)
  );
  XOR2 _730_ (
    .A(tx_left[2]),
    .B(_356_),
    .Z(_358_)
  );
  NOR2 _731_ (
    .A(_250_),
    .B(_358_),
    .Z(_047_)
  );
  NAND2 _732_ (
    .A(tx_left[3]),
    .B(_357_),
    .Z(_359_)
  );
  NAND2 _733_ (
    .A(_251_),
    .B(_359_),
    .Z(_048_)
  );
  NAND2 _734_ (
    .A(_118_),
    .B(_212_),
    .Z(_360_)
  );
  MUX2 _735_ (
    .D0(wdata[0]),
    .D1(divisor[0]),
    .S(_360_),
    .Z(_049_)
  );
  MUX2 _736_ (
    .D0(wdata[1]),
    .D1(divisor[1]),
    .S(_360_),
    .Z(_050_)
  );
  MUX2 _737_ (
    .D0(wdata[2]),
    .D1(divisor[2]),
    .S(_360_),
    .Z(_051_)
  );
  MUX2 _738_ (
    .D0(wdata[3]),
    .D1(divisor[3]),
    .S(_360_),
    .Z(_052_)
  );
  MUX2 _739_ (
    .D0(wdata[4]),
    .D1(divisor[4]),
    .S(_360_),
    .Z(_053_)
  );
  MUX2 _740_ (
    .D0(wdata[5]),
    .D1(divisor[5]),
    .S(_360_),
    .Z(_054_)
  );
  MUX2 _741_ (
    .D0(wdata[6]),
    .D1(divisor[6]),
    .S(_360_),
    .Z(_055_)
  );
  MUX2 _742_ (
    .D0(wdata[7]),
    .D1(divisor[7]),
    .S(_360_),
    .Z(_056_)
  );
  NAND2 _743_ (
    .A(_128_),
    .B(_212_),
    .Z(_361_)
  );
  MUX2 _744_ (
    .D0(wdata[0]),
    .D1(gpio_out[0]),
    .S(_361_),
    .Z(_057_)
  );
  MUX2 _745_ (
    .D0(wdata[1]),
    .D1(gpio_out[1]),
    .S(_361_),
    .Z(_058_)
  );
  MUX2 _746_ (
    .D0(wdata[2]),
    .D1(gpio_out[2]),
    .S(_361_),
    .Z(_059_)
  );
  MUX2 _747_ (
    .D0(wdata[3]),
    .D1(gpio_out[3]),
    .S(_361_),
    .Z(_060_)
  );
  MUX2 _748_ (
    .D0(wdata[4]),
    .D1(gpio_out[4]),
    .S(_361_),
    .Z(_061_)
  );
  MUX2 _749_ (
    .D0(wdata[5]),
    .D1(gpio_out[5]),
    .S(_361_),
    .Z(_062_)
  );
  MUX2 _750_ (
    .D0(wdata[6]),
    .D1(gpio_out[6]),
    .S(_361_),
    .Z(_063_)
  );
  MUX2 _751_ (
    .D0(wdata[7]),
    .D1(gpio_out[7]),
    .S(_361_),
    .Z(_064_)
  );
  AND2 _752_ (
    .A(_115_),
    .B(_212_),
    .Z(_362_)
  );
  MUX2 _753_ (
    .D0(gpio_drive[0]),
    .D1(wdata[0]),
    .S(_362_),
    .Z(_065_)
  );
  MUX2 _754_ (
    .D0(gpio_drive[1]),
    .D1(wdata[1]),
    .S(_362_),
    .Z(_066_)
  );
  MUX2 _755_ (
    .D0(gpio_drive[2]),
    .D1(wdata[2]),
    .S(_362_),
    .Z(_067_)
  );
  MUX2 _756_ (
    .D0(gpio_drive[3]),
    .D1(wdata[3]),
    .S(_362_),
    .Z(_068_)
  );
  MUX2 _757_ (
    .D0(gpio_drive[4]),
    .D1(wdata[4]),
    .S(_362_),
    .Z(_069_)
  );
  DFFR _758_ (
    .CK(clk),
    .D(_004_),
    .Q(control[0]),
    .RN(rst_n)
  );
  DFFR _759_ (
    .CK(clk),
    .D(_005_),
    .Q(control[1]),
    .RN(rst_n)
  );
  DFFR _760_ (
    .CK(clk),
    .D(_006_),
    .Q(control[2]),
    .RN(rst_n)
  );
  DFFS _761_ (
    .CK(clk),
    .D(_007_),
    .Q(tx_shift[0]),
    .SN(rst_n)
  );
  DFFS _762_ (
    .CK(clk),
    .D(_008_),
    .Q(tx_shift[1]),
    .SN(rst_n)
  );
  DFFS _763_ (
    .CK(clk),
    .D(_009_),
    .Q(tx_shift[2]),
    .SN(rst_n)
  );
  DFFS _764_ (
    .CK(clk),
    .D(_010_),
    .Q(tx_shift[3]),
    .SN(rst_n)
  );
  DFFS _765_ (
    .CK(clk),
    .D(_011_),
    .Q(tx_shift[4]),
    .SN(rst_n)
  );
  DFFS _766_ (
    .CK(clk),
    .D(_012_),
    .Q(tx_shift[5]),
    .SN(rst_n)
  );
  DFFS _767_ (
    .CK(clk),
    .D(_013_),
    .Q(tx_shift[6]),
    .SN(rst_n)
  );
  DFFS _768_ (
    .CK(clk),
    .D(_014_),
    .Q(tx_shift[7]),
    .SN(rst_n)
  );
  DFFR _769_ (
    .CK(clk),
    .D(_015_),
    .Q(rx_count[0]),
    .RN(rst_n)
  );
  DFFR _770_ (
    .CK(clk),
    .D(_016_),
    .Q(rx_count[1]),
    .RN(rst_n)
  );
  DFFR _771_ (
    .CK(clk),
    .D(_017_),
    .Q(rx_count[2]),
    .RN(rst_n)
  );
  DFFR _772_ (
    .CK(clk),
    .D(_018_),
    .Q(rx_count[3]),
    .RN(rst_n)
  );
  DFFR _773_ (
    .CK(clk),
    .D(_019_),
    .Q(rx_count[4]),
    .RN(rst_n)
  );
  DFFR _774_ (
    .CK(clk),
    .D(_020_),
    .Q(rx_count[5]),
    .RN(rst_n)
  );
  DFFR _775_ (
    .CK(clk),
    .D(_021_),
    .Q(rx_count[6]),
    .RN(rst_n)
  );
  DFFR _776_ (
    .CK(clk),
    .D(_022_),
    .Q(rx_count[7]),
    .RN(rst_n)
  );
  DFFR _777_ (
    .CK(clk),
    .D(_023_),
    .Q(rx_shift[0]),
    .RN(rst_n)
  );
  DFFR _778_ (
    .CK(clk),
    .D(_024_),
    .Q(rx_shift[1]),
    .RN(rst_n)
  );
  DFFR _779_ (
    .CK(clk),
    .D(_025_),
    .Q(rx_shift[2]),
    .RN(rst_n)
  );
  DFFR _780_ (
    .CK(clk),
    .D(_026_),
    .Q(rx_shift[3]),
    .RN(rst_n)
  );
  DFFR _781_ (
    .CK(clk),
    .D(_027_),
    .Q(rx_shift[4]),
    .RN(rst_n)
  );
  DFFR _782_ (
    .CK(clk),
    .D(_028_),
    .Q(rx_shift[5]),
    .RN(rst_n)
  );
  DFFR _783_ (
    .CK(clk),
    .D(_029_),
    .Q(rx_shift[6]),
    .RN(rst_n)
  );
  DFFR _784_ (
    .CK(clk),
    .D(_030_),
    .Q(rx_shift[7]),
    .RN(rst_n)
  );
  DFFR _785_ (
    .CK(clk),
    .D(_031_),
    .Q(rx_byte[0]),
    .RN(rst_n)
  );
  DFFR _786_ (
    .CK(clk),
    .D(_032_),
    .Q(rx_byte[1]),
    .RN(rst_n)
  );
  DFFR _787_ (
    .CK(clk),
    .D(_033_),
    .Q(rx_byte[2]),
    .RN(rst_n)
  );
  DFFR _788_ (
    .CK(clk),
    .D(_034_),
    .Q(rx_byte[3]),
    .RN(rst_n)
  );
  DFFR _789_ (
    .CK(clk),
    .D(_035_),
    .Q(rx_byte[4]),
    .RN(rst_n)
  );
  DFFR _790_ (
    .CK(clk),
    .D(_036_),
    .Q(rx_byte[5]),
    .RN(rst_n)
  );
  DFFR _791_ (
    .CK(clk),
    .D(_037_),
    .Q(rx_byte[6]),
    .RN(rst_n)
  );
  DFFR _792_ (
    .CK(clk),
    .D(_038_),
    .Q(rx_byte[7]),
    .RN(rst_n)
  );
  DFFR _793_ (
    .CK(clk),
    .D(_001_),
    .Q(rx_ready),
    .RN(rst_n)
  );
  DFFR _794_ (
    .CK(clk),
    .D(_039_),
    .Q(rx_left[0]),
    .RN(rst_n)
  );
  DFFR _795_ (
    .CK(clk),
    .D(_040_),
    .Q(rx_left[1]),
    .RN(rst_n)
  );
  DFFR _796_ (
    .CK(clk),
    .D(_041_),
    .Q(rx_left[2]),
    .RN(rst_n)
  );
  DFFR _797_ (
    .CK(clk),
    .D(_042_),
    .Q(rx_left[3]),
    .RN(rst_n)
  );
  DFFR _798_ (
    .CK(clk),
    .D(_002_),
    .Q(rx_over),
    .RN(rst_n)
  );
  DFFR _799_ (
    .CK(clk),
    .D(_043_),
    .Q(rx_frame),
    .RN(rst_n)
  );
  DFFR _800_ (
    .CK(clk),
    .D(_003_[0]),
    .Q(tx_count[0]),
    .RN(rst_n)
  );
  DFFR _801_ (
    .CK(clk),
    .D(_003_[1]),
    .Q(tx_count[1]),
    .RN(rst_n)
  );
  DFFR _802_ (
    .CK(clk),
    .D(_003_[2]),
    .Q(tx_count[2]),
    .RN(rst_n)
  );
  DFFR _803_ (
    .CK(clk),
    .D(_003_[3]),
    .Q(tx_count[3]),
    .RN(rst_n)
  );
  DFFR _804_ (
    .CK(clk),
    .D(_003_[4]),
    .Q(tx_count[4]),
    .RN(rst_n)
  );
  DFFR _805_ (
    .CK(clk),
    .D(_003_[5]),
    .Q(tx_count[5]),
    .RN(rst_n)
  );
  DFFR _806_ (
    .CK(clk),
    .D(_003_[6]),
    .Q(tx_count[6]),
    .RN(rst_n)
  );
  DFFR _807_ (
    .CK(clk),
    .D(_003_[7]),
    .Q(tx_count[7]),
    .RN(rst_n)
  );
  DFFS _808_ (
    .CK(clk),
    .D(_044_),
    .Q(txd),
    .SN(rst_n)
  );
  DFFS _809_ (
    .CK(clk),
    .D(rxd),
    .Q(rxd_sync[0]),
    .SN(rst_n)
  );
  DFFS _810_ (
    .CK(clk),
    .D(rxd_sync[0]),
    .Q(rx_bit),
    .SN(rst_n)
  );
  DFFS _811_ (
    .CK(clk),
    .D(cts_n),
    .Q(cts_sync[0]),
    .SN(rst_n)
  );
  DFFS _812_ (
    .CK(clk),
    .D(cts_sync[0]),
    .Q(cts_sync[1]),
    .SN(rst_n)
  );
  DFFR _813_ (
    .CK(clk),
    .D(_045_),
    .Q(tx_left[0]),
    .RN(rst_n)
  );
  DFFR _814_ (
    .CK(clk),
    .D(_046_),
    .Q(tx_left[1]),
    .RN(rst_n)
  );
  DFFR _815_ (
    .CK(clk),
    .D(_047_),
    .Q(tx_left[2]),
    .RN(rst_n)
  );
  DFFR _816_ (
    .CK(clk),
    .D(_048_),
    .Q(tx_left[3]),
    .RN(rst_n)
  );
  DFFS _817_ (
    .CK(clk),
    .D(_049_),
    .Q(divisor[0]),
    .SN(rst_n)
  );
  DFFS _818_ (
    .CK(clk),
    .D(_050_),
    .Q(divisor[1]),
    .SN(rst_n)
  );
  DFFS _819_ (
    .CK(clk),
    .D(_051_),
    .Q(divisor[2]),
    .SN(rst_n)
  );
  DFFR _820_ (
    .CK(clk),
    .D(_052_),
    .Q(divisor[3]),
    .RN(rst_n)
  );
  DFFR _821_ (
    .CK(clk),
    .D(_053_),
    .Q(divisor[4]),
    .RN(rst_n)
  );
  DFFR _822_ (
    .CK(clk),
    .D(_054_),
    .Q(divisor[5]),
    .RN(rst_n)
  );
  DFFR _823_ (
    .CK(clk),
    .D(_055_),
    .Q(divisor[6]),
    .RN(rst_n)
  );
  DFFR _824_ (
    .CK(clk),
    .D(_056_),
    .Q(divisor[7]),
    .RN(rst_n)
  );
  DFFR _825_ (
    .CK(clk),
    .D(_057_),
    .Q(gpio_out[0]),
    .RN(rst_n)
  );
  DFFR _826_ (
    .CK(clk),
    .D(_058_),
    .Q(gpio_out[1]),
    .RN(rst_n)
  );
  DFFR _827_ (
    .CK(clk),
    .D(_059_),
    .Q(gpio_out[2]),
    .RN(rst_n)
  );
  DFFR _828_ (
    .CK(clk),
    .D(_060_),
    .Q(gpio_out[3]),
    .RN(rst_n)
  );
  DFFR _829_ (
    .CK(clk),
    .D(_061_),
    .Q(gpio_out[4]),
    .RN(rst_n)
  );
  DFFR _830_ (
    .CK(clk),
    .D(_062_),
    .Q(gpio_out[5]),
    .RN(rst_n)
  );
  DFFR _831_ (
    .CK(clk),
    .D(_063_),
    .Q(gpio_out[6]),
    .RN(rst_n)
  );
  DFFR _832_ (
    .CK(clk),
    .D(_064_),
    .Q(gpio_out[7]),
    .RN(rst_n)
  );
  DFFR _833_ (
    .CK(clk),
    .D(_065_),
    .Q(gpio_drive[0]),
    .RN(rst_n)
  );
  DFFR _834_ (
    .CK(clk),
    .D(_066_),
    .Q(gpio_drive[1]),
    .RN(rst_n)
  );
  DFFR _835_ (
    .CK(clk),
    .D(_067_),
    .Q(gpio_drive[2]),
    .RN(rst_n)
  );
  DFFR _836_ (
    .CK(clk),
    .D(_068_),
    .Q(gpio_drive[3]),
    .RN(rst_n)
  );
  DFFR _837_ (
    .CK(clk),
    .D(_069_),
    .Q(gpio_drive[4]),
    .RN(rst_n)
  );
  DFFR _838_ (
    .CK(clk),
    .D(_000_[0]),
    .Q(counter[0]),
    .RN(rst_n)
  );
  DFFR _839_ (
    .CK(clk),
    .D(_000_[1]),
    .Q(counter[1]),
    .RN(rst_n)
  );
  DFFR _840_ (
    .CK(clk),
    .D(_000_[2]),
    .Q(counter[2]),
    .RN(rst_n)
  );
  DFFR _841_ (
    .CK(clk),
    .D(_000_[3]),
    .Q(counter[3]),
    .RN(rst_n)
  );
  DFFR _842_ (
    .CK(clk),
    .D(_000_[4]),
    .Q(counter[4]),
    .RN(rst_n)
  );
  DFFR _843_ (
    .CK(clk),
    .D(_000_[5]),
    .Q(counter[5]),
    .RN(rst_n)
  );
  DFFR _844_ (
    .CK(clk),
    .D(_000_[6]),
    .Q(counter[6]),
    .RN(rst_n)
  );
  DFFR _845_ (
    .CK(clk),
    .D(_000_[7]),
    .Q(counter[7]),
    .RN(rst_n)
  );
  assign rxd_sync[1] = rx_bit;
endmodule

// The pad ring: one pad for every signal of the package, all of them in the top module.
//
// The five test pads are in place and not used yet: the core side of TDI, TMS, TCK and TRST hangs on a
// net of its own, and TDO is held quiet (data low, driver off) until a TAP takes it over.

module chip (
    input  wire       clk,
    input  wire       rst_n,
    input  wire       cs_n,
    input  wire       wr_n,
    input  wire       rd_n,
    input  wire [2:0] addr,
    input  wire [7:0] wdata,
    input  wire       rxd,
    input  wire       cts_n,
    output wire       txd,
    output wire       rts_n,
    output wire       irq,
    output wire       tx_busy,
    output wire       rx_ready,
    output wire       baud_tick,
    output wire [7:0] rdata,
    inout  wire [7:0] gpio,
    input  wire       tdi,
    input  wire       tms,
    input  wire       tck,
    input  wire       trst_n,
    output wire       tdo
);
    wire       clk_c, rst_n_c, cs_n_c, wr_n_c, rd_n_c, rxd_c, cts_n_c;
    wire [2:0] addr_c;
    wire [7:0] wdata_c, rdata_c, gpio_o, gpio_i;
    wire [4:0] gpio_oe_n;
    wire       txd_c, rts_n_c, irq_c, tx_busy_c, rx_ready_c, baud_tick_c, rdata_oe_n;
    wire       tdi_c, tms_c, tck_c, trst_n_c;

    CKPAD  pad_clk       (.PAD(clk), .C(clk_c));
    IPAD   pad_rst_n     (.PAD(rst_n), .C(rst_n_c));
    IPAD   pad_cs_n      (.PAD(cs_n), .C(cs_n_c));
    IPAD   pad_wr_n      (.PAD(wr_n), .C(wr_n_c));
    IPAD   pad_rd_n      (.PAD(rd_n), .C(rd_n_c));
    IPAD   pad_addr0     (.PAD(addr[0]), .C(addr_c[0]));
    IPAD   pad_addr1     (.PAD(addr[1]), .C(addr_c[1]));
    IPAD   pad_addr2     (.PAD(addr[2]), .C(addr_c[2]));
    IPAD   pad_wdata0    (.PAD(wdata[0]), .C(wdata_c[0]));
    IPAD   pad_wdata1    (.PAD(wdata[1]), .C(wdata_c[1]));
    IPAD   pad_wdata2    (.PAD(wdata[2]), .C(wdata_c[2]));
    IPAD   pad_wdata3    (.PAD(wdata[3]), .C(wdata_c[3]));
    IPAD   pad_wdata4    (.PAD(wdata[4]), .C(wdata_c[4]));
    IPAD   pad_wdata5    (.PAD(wdata[5]), .C(wdata_c[5]));
    IPAD   pad_wdata6    (.PAD(wdata[6]), .C(wdata_c[6]));
    IPAD   pad_wdata7    (.PAD(wdata[7]), .C(wdata_c[7]));
    IPAD   pad_rxd       (.PAD(rxd), .C(rxd_c));
    IPAD   pad_cts_n     (.PAD(cts_n), .C(cts_n_c));

    OPAD   pad_txd       (.I(txd_c), .PAD(txd));
    OPAD   pad_rts_n     (.I(rts_n_c), .PAD(rts_n));
    OPAD   pad_irq       (.I(irq_c), .PAD(irq));
    OPAD   pad_tx_busy   (.I(tx_busy_c), .PAD(tx_busy));
    OPAD   pad_rx_ready  (.I(rx_ready_c), .PAD(rx_ready));
    OPAD   pad_baud_tick (.I(baud_tick_c), .PAD(baud_tick));

    // The read bus: eight drivers, one enable.
    TPAD   pad_rdata0    (.I(rdata_c[0]), .OEN(rdata_oe_n), .PAD(rdata[0]));
    TPAD   pad_rdata1    (.I(rdata_c[1]), .OEN(rdata_oe_n), .PAD(rdata[1]));
    TPAD   pad_rdata2    (.I(rdata_c[2]), .OEN(rdata_oe_n), .PAD(rdata[2]));
    TPAD   pad_rdata3    (.I(rdata_c[3]), .OEN(rdata_oe_n), .PAD(rdata[3]));
    TPAD   pad_rdata4    (.I(rdata_c[4]), .OEN(rdata_oe_n), .PAD(rdata[4]));
    TPAD   pad_rdata5    (.I(rdata_c[5]), .OEN(rdata_oe_n), .PAD(rdata[5]));
    TPAD   pad_rdata6    (.I(rdata_c[6]), .OEN(rdata_oe_n), .PAD(rdata[6]));
    TPAD   pad_rdata7    (.I(rdata_c[7]), .OEN(rdata_oe_n), .PAD(rdata[7]));

    // gpio 0 to 3 have an enable each, gpio 4 to 7 share one.
    BPAD   pad_gpio0     (.I(gpio_o[0]), .OEN(gpio_oe_n[0]), .C(gpio_i[0]), .PAD(gpio[0]));
    BPAD   pad_gpio1     (.I(gpio_o[1]), .OEN(gpio_oe_n[1]), .C(gpio_i[1]), .PAD(gpio[1]));
    BPAD   pad_gpio2     (.I(gpio_o[2]), .OEN(gpio_oe_n[2]), .C(gpio_i[2]), .PAD(gpio[2]));
    BPAD   pad_gpio3     (.I(gpio_o[3]), .OEN(gpio_oe_n[3]), .C(gpio_i[3]), .PAD(gpio[3]));
    BPAD   pad_gpio4     (.I(gpio_o[4]), .OEN(gpio_oe_n[4]), .C(gpio_i[4]), .PAD(gpio[4]));
    BPAD   pad_gpio5     (.I(gpio_o[5]), .OEN(gpio_oe_n[4]), .C(gpio_i[5]), .PAD(gpio[5]));
    BPAD   pad_gpio6     (.I(gpio_o[6]), .OEN(gpio_oe_n[4]), .C(gpio_i[6]), .PAD(gpio[6]));
    BPAD   pad_gpio7     (.I(gpio_o[7]), .OEN(gpio_oe_n[4]), .C(gpio_i[7]), .PAD(gpio[7]));

    IPADU  pad_tdi       (.PAD(tdi), .C(tdi_c));
    IPADU  pad_tms       (.PAD(tms), .C(tms_c));
    IPAD   pad_tck       (.PAD(tck), .C(tck_c));
    IPADU  pad_trst_n    (.PAD(trst_n), .C(trst_n_c));
    TPAD   pad_tdo       (.I(1'b0), .OEN(1'b1), .PAD(tdo));

    uart_core core (
        .clk(clk_c), .rst_n(rst_n_c), .cs_n(cs_n_c), .wr_n(wr_n_c), .rd_n(rd_n_c), .addr(addr_c), .wdata(wdata_c),
        .rxd(rxd_c), .cts_n(cts_n_c), .txd(txd_c), .rts_n(rts_n_c), .irq(irq_c), .tx_busy(tx_busy_c),
        .rx_ready(rx_ready_c), .baud_tick(baud_tick_c), .rdata(rdata_c), .rdata_oe_n(rdata_oe_n),
        .gpio_out(gpio_o), .gpio_oe_n(gpio_oe_n), .gpio_in(gpio_i));
endmodule
