// A small serial port with eight general-purpose pins, for an 8-bit bus.
//
//   addr  read                     write
//   0     received byte            byte to send
//   1     status                   control: bit 0 rx interrupt, bit 1 tx interrupt, bit 2 rts
//   2     clocks per bit, less 1   the same
//   3     gpio output              the same
//   4     gpio direction           bits 0 to 3 drive gpio 0 to 3, bit 4 drives gpio 4 to 7
//   5     gpio pins                nothing
//   6     free-running counter     clears it
//   7     8'h55                    nothing
//
// Status: bit 0 byte received, bit 1 sender busy, bit 2 frame error, bit 3 overrun, bit 4 cts.
//
// A write is taken at the rising edge of clk while cs_n and wr_n are low. A read is combinational:
// rdata is driven onto the bus while cs_n and rd_n are low, and released otherwise.

module uart_core (
    input  wire       clk,
    input  wire       rst_n,
    input  wire       cs_n,
    input  wire       wr_n,
    input  wire       rd_n,
    input  wire [2:0] addr,
    input  wire [7:0] wdata,
    input  wire       rxd,
    input  wire       cts_n,
    output reg        txd,
    output wire       rts_n,
    output wire       irq,
    output wire       tx_busy,
    output wire       rx_ready,
    output wire       baud_tick,
    output reg  [7:0] rdata,
    output wire       rdata_oe_n,
    output wire [7:0] gpio_out,
    output wire [4:0] gpio_oe_n,
    input  wire [7:0] gpio_in
);
    wire write = ~cs_n & ~wr_n;
    wire read  = ~cs_n & ~rd_n;

    reg [7:0] divisor;
    reg [7:0] gpio_value;
    reg [4:0] gpio_drive;
    reg [2:0] control;
    reg [7:0] counter;

    always @(posedge clk or negedge rst_n)
        if (!rst_n) begin
            divisor    <= 8'd7;
            gpio_value <= 8'd0;
            gpio_drive <= 5'd0;
            control    <= 3'd0;
            counter    <= 8'd0;
        end else begin
            counter <= (write && addr == 3'd6) ? 8'd0 : counter + 8'd1;
            if (write && addr == 3'd1) control    <= wdata[2:0];
            if (write && addr == 3'd2) divisor    <= wdata;
            if (write && addr == 3'd3) gpio_value <= wdata;
            if (write && addr == 3'd4) gpio_drive <= wdata[4:0];
        end

    assign gpio_out  = gpio_value;
    assign gpio_oe_n = ~gpio_drive;
    assign rts_n     = ~control[2];

    // Both asynchronous inputs go through two flip-flops.
    reg [1:0] rxd_sync, cts_sync;
    always @(posedge clk or negedge rst_n)
        if (!rst_n) begin
            rxd_sync <= 2'b11;
            cts_sync <= 2'b11;
        end else begin
            rxd_sync <= {rxd_sync[0], rxd};
            cts_sync <= {cts_sync[0], cts_n};
        end

    // Sender: start bit, eight data bits from bit 0 up, stop bit.
    reg [7:0] tx_count;
    reg [8:0] tx_shift;
    reg [3:0] tx_left;
    assign tx_busy   = tx_left != 4'd0;
    assign baud_tick = tx_count == 8'd0;
    always @(posedge clk or negedge rst_n)
        if (!rst_n) begin
            tx_count <= 8'd0;
            tx_shift <= 9'h1ff;
            tx_left  <= 4'd0;
            txd      <= 1'b1;
        end else if (write && addr == 3'd0 && !tx_busy) begin
            tx_count <= divisor;
            tx_shift <= {1'b1, wdata};
            tx_left  <= 4'd10;
            txd      <= 1'b0;
        end else if (!baud_tick) begin
            tx_count <= tx_count - 8'd1;
        end else begin
            tx_count <= divisor;
            if (tx_busy) begin
                txd      <= tx_shift[0];
                tx_shift <= {1'b1, tx_shift[8:1]};
                tx_left  <= tx_left - 4'd1;
            end
        end

    // Receiver: waits half a bit behind the falling edge of the start bit, then samples bit by bit.
    reg [7:0] rx_count, rx_shift, rx_byte;
    reg [3:0] rx_left;
    reg       rx_full, rx_frame, rx_over;
    wire      rx_bit = rxd_sync[1];
    always @(posedge clk or negedge rst_n)
        if (!rst_n) begin
            rx_count <= 8'd0;
            rx_shift <= 8'd0;
            rx_byte  <= 8'd0;
            rx_left  <= 4'd0;
            rx_full  <= 1'b0;
            rx_frame <= 1'b0;
            rx_over  <= 1'b0;
        end else begin
            if (read && addr == 3'd0) begin
                rx_full <= 1'b0;
                rx_over <= 1'b0;
            end
            if (rx_left == 4'd0) begin
                if (!rx_bit) begin
                    rx_left  <= 4'd10;
                    rx_count <= {1'b0, divisor[7:1]};
                end
            end else if (rx_count != 8'd0) begin
                rx_count <= rx_count - 8'd1;
            end else begin
                rx_count <= divisor;
                rx_left  <= rx_left - 4'd1;
                if (rx_left == 4'd10) begin
                    if (rx_bit) rx_left <= 4'd0;        // too short for a start bit
                end else if (rx_left == 4'd1) begin
                    rx_byte  <= rx_shift;
                    rx_frame <= ~rx_bit;
                    rx_full  <= 1'b1;
                    rx_over  <= rx_full;
                end else begin
                    rx_shift <= {rx_bit, rx_shift[7:1]};
                end
            end
        end

    assign rx_ready = rx_full;
    assign irq      = (control[0] & rx_full) | (control[1] & ~tx_busy);

    assign rdata_oe_n = ~read;
    always @*
        case (addr)
            3'd0:    rdata = rx_byte;
            3'd1:    rdata = {3'd0, ~cts_sync[1], rx_over, rx_frame, tx_busy, rx_full};
            3'd2:    rdata = divisor;
            3'd3:    rdata = gpio_value;
            3'd4:    rdata = {3'd0, gpio_drive};
            3'd5:    rdata = gpio_in;
            3'd6:    rdata = counter;
            default: rdata = 8'h55;
        endcase
endmodule
