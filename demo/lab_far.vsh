# The card at the far end of the lab's trunk: two hosts, and a LAG of the trunk's two cables.
attach 1=tap:h5 2=tap:h6 3=veth:t1 4=veth:t2
vlan access 10 1
vlan access 20 2
vlan remove 1 3,4
vlan add 10 tagged 3,4
vlan add 20 tagged 3,4
lag create
lag add 0 3,4
