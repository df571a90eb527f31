# Five hosts on ports 1 to 5: VLAN 10 and VLAN 20, and port 5 carries both, tagged.
# What they once sent is replayed; what each port sends goes to out/portN.pcap.

attach 1=pcap:demo/h1.pcap,out/port1.pcap 2=pcap:demo/h2.pcap,out/port2.pcap
attach 3=pcap:demo/h3.pcap,out/port3.pcap 4=pcap:demo/h4.pcap,out/port4.pcap
attach 5=pcap:demo/h5.pcap,out/port5.pcap

vlan access 10 1,2
vlan access 20 3,4
vlan remove 1 5
vlan add 10 tagged 5
vlan add 20 tagged 5
wait 1s

echo "== Two VLANs, configured by the driver"
show vlans
echo
echo "== Replay of what the hosts sent"
replay
wait 1s
echo
echo "== Frames by port"
show counters
echo
echo "== Where the addresses are"
show fdb
echo
echo "== What went where"
echo "out of port 1 (VLAN 10, out/port1.pcap):"
show capture out/port1.pcap
echo "out of port 2 (VLAN 10, out/port2.pcap):"
show capture out/port2.pcap
echo "out of port 3 (VLAN 20, out/port3.pcap):"
show capture out/port3.pcap
echo "out of port 4 (VLAN 20, out/port4.pcap):"
show capture out/port4.pcap
echo "out of port 5 (VLANs 10 and 20 tagged, out/port5.pcap):"
show capture out/port5.pcap
echo
echo "== What the CPU received"
show cpu
echo
echo "== Three frames that get nowhere"
echo "port 3 sends into VLAN 10, of which it is no member; port 1 sends to itself;"
echo "port 2 sends a frame that is cut off"
send 3 src=02:00:00:00:00:03 dst=02:00:00:00:00:01 vlan=10 type=0x88b5
send 1 src=02:00:00:00:00:0a dst=02:00:00:00:00:01 type=0x88b5
send 2 hex:020000000001
echo "why, for the first of them:"
trace 3 src=02:00:00:00:00:03 dst=02:00:00:00:00:01 vlan=10 type=0x88b5
echo
echo "== What was dropped, and why"
show drops
