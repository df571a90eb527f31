#pragma once

#include <cstdint>

#include "platform/mp.h"

/// Which fields of `of_flow_mp_s` take part in a flow's match (its `flags`, a bit set). A field
/// whose bit is clear matches anything.
enum of_flow_qualify_t : uint32_t {
    OF_QUALIFY_IN_PORT = 0x0001,
    OF_QUALIFY_SRC_MAC = 0x0002,
    OF_QUALIFY_DST_MAC = 0x0004,
    OF_QUALIFY_ETHER_TYPE = 0x0008,
    OF_QUALIFY_VLAN_ID = 0x0010,
    OF_QUALIFY_VLAN_PRI = 0x0020,
    OF_QUALIFY_SRC_IP = 0x0040,
    OF_QUALIFY_DST_IP = 0x0080,
    OF_QUALIFY_L4_SRC_PORT = 0x0100,
    OF_QUALIFY_L4_DST_PORT = 0x0200,
    OF_QUALIFY_IP_PROTOCOL = 0x0400,
    OF_QUALIFY_TOS = 0x0800,
    OF_QUALIFY_UDF = 0x1000, ///< bytes at any offset, given by `of_flow_qualify_udf_s`
};

/// A flow's match. All values are in host byte order; MAC addresses are in wire order.
struct of_flow_mp_s {
    Mp port; ///< ingress port
    uint8_t src_mac[6];
    uint8_t dst_mac[6];
    uint16_t ether_type;
    uint16_t vlan_id;
    uint16_t vlan_pri; ///< low 8 bits
    uint32_t src_ip;
    uint32_t src_ip_mask;
    uint32_t dst_ip;
    uint32_t dst_ip_mask;
    uint16_t l4_src_port;
    uint16_t l4_dst_port;
    uint16_t ip_protocol; ///< low 8 bits
    uint16_t tos;         ///< low 8 bits
    uint32_t flags;       ///< `of_flow_qualify_t` bits
};

/// Bytes to match at a place in the frame, for flows with `OF_QUALIFY_UDF`.
struct of_flow_qualify_udf_s {
    uint32_t offset;     ///< from the frame's first byte
    uint32_t length;     ///< bytes to match, at least 1
    const uint8_t* data; ///< `length` bytes
    const uint8_t* mask; ///< `length` bytes; a clear bit matches anything
};

enum of_action_t : int {
    OF_ACTION_OUTPUT = 0,    ///< forward; the kind of port is the parameter's `type`
    OF_ACTION_REINSTALL = 1, ///< no action of its own; the entry is only installed again
    OF_ACTION_DROP = 2,
    OF_ACTION_MODIFY = 3,     ///< rewrite a field; which one is the parameter's `type`
    OF_ACTION_BYPASS_STP = 4, ///< ignore the spanning-tree state
};

/// `of_action_param_s::type` of `OF_ACTION_OUTPUT`. From 7 on: the operation's `Mp` argument.
enum of_output_t : uint32_t {
    OF_OUTPUT_ALL_BYPASS_STP = 0, ///< all front ports, whatever their spanning-tree state
    OF_OUTPUT_CPU = 1,
    OF_OUTPUT_CPU_ALIAS = 2, ///< the CPU port too
    OF_OUTPUT_NONE = 3,      ///< the entry is only installed again
    OF_OUTPUT_LOOPBACK = 4,
    OF_OUTPUT_NONE_ALIAS = 5, ///< as `OF_OUTPUT_NONE`
    OF_OUTPUT_ALL = 6,        ///< all front ports
    OF_OUTPUT_PORT = 7,       ///< the port given by the operation's `Mp` argument
};

/// `of_action_param_s::type` of `OF_ACTION_MODIFY`.
enum of_modify_t : uint32_t {
    OF_MODIFY_OUTER_VLAN_ID = 0,
    OF_MODIFY_OUTER_VLAN_PRI = 1,
    OF_MODIFY_DELETE_INNER_VLAN = 2,
    OF_MODIFY_SRC_MAC = 3,
    OF_MODIFY_DST_MAC = 4,
    OF_MODIFY_TOS = 5,
};

struct of_action_param_s {
    uint32_t type; ///< an `of_output_t` or `of_modify_t`
    union {
        uint16_t number; ///< VLAN id, priority or TOS
        uint8_t mac[6];
    } value;
};
