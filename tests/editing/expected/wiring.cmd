== one level, the larger group first
add shift_buf_1_1 BUFX
connect TAP{shiftDR} shift_buf_1_1{A}
add shift_buf_1_2 BUFX
connect TAP{shiftDR} shift_buf_1_2{A}
connect BCELL0{SE} shift_buf_1_1{Z}
connect BCELL1{SE} shift_buf_1_1{Z}
connect BCELL2{SE} shift_buf_1_2{Z}
== two levels of inverting buffers
add shift_buf_1_1 IBX
connect TAP{shiftDR} shift_buf_1_1{A}
add shift_buf_1_2 IBX
connect TAP{shiftDR} shift_buf_1_2{A}
add shift_buf_2_1 IBX
add shift_buf_2_2 IBX
add shift_buf_2_3 IBX
connect shift_buf_1_1{Z} shift_buf_2_1{A}
connect shift_buf_1_1{Z} shift_buf_2_2{A}
connect shift_buf_1_2{Z} shift_buf_2_3{A}
connect BCELL0{SE} shift_buf_2_1{Z}
connect BCELL1{SE} shift_buf_2_1{Z}
connect BCELL2{SE} shift_buf_2_2{Z}
connect BCELL3{SE} shift_buf_2_2{Z}
connect BCELL4{SE} shift_buf_2_3{Z}
== an inverter for a direct active-low signal
add shift_inv_buf IBX
connect shift_inv_buf{A} TAP{shiftDR}
connect BCELL0{SE} shift_inv_buf{Z}
connect BCELL1{SE} shift_inv_buf{Z}
== chain
add shift_df_buf_1 BUFX
connect TAP{shiftDR} shift_df_buf_1{A}
add shift_df_buf_2 BUFX
connect shift_df_buf_1{Z} shift_df_buf_2{A}
connect BCELL0{SE} shift_df_buf_1{Z}
connect BCELL1{SE} shift_df_buf_1{Z}
connect BCELL2{SE} shift_df_buf_2{Z}
== chain of inverting buffers
add shift_df_buf_1 IBX
connect TAP{shiftDR} shift_df_buf_1{A}
add shift_df_buf_2 IBX
connect shift_df_buf_1{Z} shift_df_buf_2{A}
connect BCELL0{SE} shift_df_buf_1{Z}
connect BCELL1{SE} shift_df_buf_1{Z}
connect BCELL2{SE} shift_df_buf_2{Z}
== %DF_GROUP_SIZE alone
connect BCELL0{SE} TAP{shiftDR}
connect BCELL1{SE} TAP{shiftDR}
