# The card of the lab: see the map in demo/lab.sh.
attach 1=tap:h1 2=tap:h2 3=tap:h3 4=tap:h4 5=veth:t1 6=veth:t2 7=tap:h7 8=tap:h8
shell ip link set t2 down
shell $VEXO_LAB_STEP step:connect

vlan access 10 1,2
vlan access 20 3,4
vlan access 30 7
vlan access 40 8
vlan remove 1 5,6
vlan add 10 tagged 5,6
vlan add 20 tagged 5,6

# The router between VLANs 30 and 40. IPv6 reaches its hosts by routes.
call create_l3_interface_with_id 02:00:00:00:30:fe 30 30 no
call create_l3_interface_with_id 02:00:00:00:40:fe 40 40 no
l3 host add 10.0.30.7 02:00:00:00:00:07 30 7
l3 host add 10.0.40.8 02:00:00:00:00:08 40 8
l3 route add 2001:db8:30::7/128 02:00:00:00:00:07 30 7
l3 route add 2001:db8:40::8/128 02:00:00:00:00:08 40 8

shell $VEXO_LAB_STEP step:ready
