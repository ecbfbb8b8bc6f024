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
