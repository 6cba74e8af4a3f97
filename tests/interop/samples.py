"""Messages as a program in Python makes them, from the schema alone.

The names are those of the golden bytes, which the library wrote for the same values.
"""

import ipaddress

import policer_pb2
from filter_actions_pb2 import ActionPB
from filter_entries_pb2 import FiltersEntryPB
from filter_groups_pb2 import FiltersGroupPB
from filter_matches_pb2 import MatchPB

# ------------------------------------------------------------------------------------------ values


def limid(*octets):
    """A logical interface: four octets, the first one the most significant."""
    return int.from_bytes(bytes(octets), "big")


def mac(text):
    return bytes.fromhex(text.replace(":", ""))


def ip(text):
    """Of both families; masks too."""
    return ipaddress.ip_address(text).packed


def under(prefix, address, mask):
    """An address of the family with that prefix, and its mask."""
    return {prefix + "_": address, prefix + "_mask_": mask}


EXACT_MAC = mac("ff:ff:ff:ff:ff:ff")
EXACT_IPV4 = ip("255.255.255.255")
EXACT_IPV6 = ip("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff")
TWO_PORTS = [limid(1, 2, 3, 4), limid(0, 0, 0, 1)]

# ------------------------------------------------------------------------------------------- kinds

# Code and fields of a sample of each kind.
MATCHES = {
    "MatchAll": (0, {}),
    "MatchIngressPorts": (1, {"ports_": TWO_PORTS}),
    "MatchExternalVlanId": (2, {"vlan_id_": [5, 300]}),
    "MatchTPID": (3, {"tpid_": 0x8100}),
    "MatchDstMac": (4, under("mac", mac("00:1a:2b:00:00:01"), EXACT_MAC)),
    "MatchDstL4Port": (5, under("l4port", 80, 0xFFFF)),
    "MatchSrcL4Port": (6, under("l4port", 65535, 0xFFFF)),
    "MatchSrcMac": (7, under("mac", mac("aa:bb:cc:dd:ee:0f"), EXACT_MAC)),
    "MatchL2SrcEntryType": (8, {"l2_src_": 3}),
    "MatchSrcIPv4": (9, under("ipv4", ip("192.0.2.1"), EXACT_IPV4)),
    "MatchDstIPv4": (10, under("ipv4", ip("198.51.100.7"), EXACT_IPV4)),
    "MatchInternalVlanId": (11, {"vlan_id_": [10, 20]}),
    "MatchPcp": (12, {"pcp_": 7}),
    "MatchInternalPcp": (13, {"pcp_": 5}),
    "MatchSrcIPv6": (14, under("ipv6", ip("2001:db8::1"), EXACT_IPV6)),
    "MatchDstIPv6": (15, under("ipv6", ip("2001:db8:0:1:2:3:4:5"), EXACT_IPV6)),
    "MatchVlanUntagged": (16, {}),
    "MatchIpProtocol": (17, {"ipprotocol_": 6}),
    "MatchPacketRes": (18, {"packet_resolution_": 4}),
    "MatchMplsTerm": (19, {"mpls_terminated_": True}),
    "MatchToS": (20, {"tos_": 41}),
    "MatchVirtualPort": (21, {"limid_": limid(2, 0, 1, 44)}),
    "MatchEgressPorts": (22, {"ports_": TWO_PORTS}),
    "MatchIngressStpState": (23, {"ingress_stp_state_": 2}),
    "MatchVlanInfo": (24, {"vlan_info_svc_vlan_type_": 7}),
    "MatchSrcPort": (25, {"limid_": limid(3, 1, 0, 0)}),
    "MatchTTL": (26, {"ttl_": 64}),
    "MatchVrfId": (27, {"vrf_id_": 5}),
    "MatchDrop": (28, {"drop_flag_": True}),
    "MatchCpuPort": (29, {}),
    "MatchForwardingType": (30, {"fwd_type_": 1}),
    "MatchDestinationCpu": (31, {}),
}

# Other forms: no elements, masks, and numbers that read as negative ones in other types.
MORE_MATCHES = {
    "MatchDSCP": (20, {"tos_": 10 << 2}),
    "MatchIngressPorts_none": (1, {}),
    "MatchIngressPorts_excluded": (1, {"excluded_port_types_": [0]}),
    "MatchIngressPorts_excludedUnnamed": (1, {"excluded_port_types_": [5, 0]}),
    "MatchEgressPorts_none": (22, {}),
    "MatchDrop_false": (28, {"drop_flag_": False}),
    "MatchMplsTerm_false": (19, {"mpls_terminated_": False}),
    "MatchForwardingType_negative": (30, {"fwd_type_": 2**32 - 4}),
}

ACTIONS = {
    "ActionPermit": (0, {}),
    "ActionDeny": (1, {}),
    "ActionCopyToCpu": (2, {}),
    "ActionBlockEgressPorts": (
        3, {"ports_": [limid(0, 2, 0, 3), limid(1, 2, 3, 4), limid(0, 2, 0, 3)]}),
    "ActionCopyToCpuCancel": (4, {"cp2cpu_cancel_type_": 0}),
    "ActionSetPcp": (5, {"pcp_": 7}),
    "ActionSetPcpAndQueue": (6, {"pcp_and_queue_": 66}),
    "ActionSetInnerPcp": (7, {"pcp_": 3}),
    "ActionSetDSCP": (8, {"dscp_": 46}),
    "ActionMapToCosQueue": (9, {"cosq_": 0}),
    "ActionMapToCpuCosQueue": (10, {"cosq_": 255}),
    "ActionRedirect": (11, {"ports_": [limid(1, 2, 3, 4)]}),
    "ActionReplaceDstMac": (12, {"mac_": mac("00:1a:2b:00:00:01")}),
    "ActionRedirectCancel": (13, {}),
    "ActionReplaceSrcMac": (14, {"mac_": mac("fe:dc:ba:98:76:54")}),
    "ActionL3Switch": (15, {"l3_dest_id_": 4000000000}),
    "ActionBlackHole": (16, {}),
}

MORE_ACTIONS = {
    "ActionCopyToCpuCancel_switch": (4, {"cp2cpu_cancel_type_": 1}),
    "ActionRedirect_none": (11, {}),
}


def match(name):
    code, fields = {**MATCHES, **MORE_MATCHES}[name]
    return MatchPB(type_=code, **fields)


def action(name):
    code, fields = {**ACTIONS, **MORE_ACTIONS}[name]
    return ActionPB(type_=code, **fields)


# ---------------------------------------------------------------------------------------- policers

FLOW = 3


def no_policer():
    return policer_pb2.PolicerPB(
        id=0xFFFFFFFF, stage=2,
        mode={"type": 4, "cir": 0, "cbs": 0, "ebs": 0, "eir": 0, "pbs": 0, "pir": 0})


def flow_policer(stage):
    """Limits a flow; its actions in ascending order of color, type and value."""
    return policer_pb2.PolicerPB(
        id=17, stage=stage,
        mode={"type": FLOW, "cir": 1000, "cbs": 2000, "ebs": 3000, "eir": 4000, "pbs": 5000,
              "pir": 6000},
        actions=[{"color": 0, "type": 0, "value": 0},
                 {"color": 1, "type": 1, "value": 3},
                 {"color": 2, "type": 2, "value": 46}])


# ----------------------------------------------------------------------------- entries and groups


def entry(id_, priority=0, matches=(), actions=(), counter=(0, 0), policer=None):
    return FiltersEntryPB(
        id_=id_, priority_=priority, matches_=matches, actions_=actions,
        counter_={"id": counter[0], "type": counter[1]},
        policer_=(policer or no_policer()).SerializeToString())


def group(id_, priority=0, stage=0, type_=0, entries=()):
    return FiltersGroupPB(id_=id_, priority_=priority, stage_=stage, type_=type_, entries_=entries)


def every_match(but):
    return [match(name) for name in MATCHES if not name.endswith(but)]


def to_network(address, mask):
    return MatchPB(type_=10, **under("ipv4", ip(address), ip(mask)))


def ipv6_entry():
    destination = under("ipv6", ip("2001:db8::"), ip("ffff:ffff::"))
    ports = [limid(0, 1, 0, 1), limid(0, 1, 0, 2), limid(1, 0, 0, 7)]
    return entry(3, matches=[MatchPB(type_=15, **destination), MatchPB(type_=27, vrf_id_=9)],
                 actions=[ActionPB(type_=11, ports_=ports)])


def typical_entry(id_):
    return entry(id_, 100, [to_network("192.0.2.0", "255.255.255.0")], [action("ActionDeny")])


def entry_from_10_1():
    return entry(2, 4294967295,
                 [MatchPB(type_=6, **under("l4port", 0x0400, 0xFC00)),
                  MatchPB(type_=9, **under("ipv4", ip("10.1.0.0"), ip("255.255.0.0"))),
                  match("MatchIpProtocol")],
                 [action("ActionPermit"), ActionPB(type_=8, dscp_=10)])


ENTRIES = {
    "empty": entry(0),
    "limits": entry(65535, 4294967295, counter=(65535, -1)),
    "typical": typical_entry(7),
    "ipv6": ipv6_entry(),
    "dscp": entry(4, matches=[match("MatchDSCP")]),
    "counter_packets": entry(5, counter=(6, 1)),
    "policer_flow": entry(1, policer=flow_policer(stage=1)),
    "every_match_but_ipv6": entry(1000, matches=every_match(but="IPv6")),
    "every_match_but_ipv4_and_tpid": entry(1001, matches=every_match(but=("IPv4", "TPID"))),
    "every_action": entry(1002, actions=[action(name) for name in ACTIONS]),
}

GROUPS = {
    "empty": group(7),
    "limits": group(65535, 65535, 3, 5),
    "ipv6": group(8, type_=8, entries=[ipv6_entry()]),
    "access_list": group(1, 500, 0, 3, [entry_from_10_1(), typical_entry(11), entry(300)]),
}
