#include "tests/support/exchange_files.h"

namespace vex {

const char* const fbxWorld = R"(; FBX 7.3.0 project file
FBXHeaderExtension:  {
	FBXHeaderVersion: 1003
	FBXVersion: 7300
}
GlobalSettings:  {
	Version: 1000
	Properties70:  {
		P: "UpAxis", "int", "Integer", "",2
		P: "UpAxisSign", "int", "Integer", "",1
		P: "FrontAxis", "int", "Integer", "",1
		P: "FrontAxisSign", "int", "Integer", "",-1
		P: "CoordAxis", "int", "Integer", "",0
		P: "CoordAxisSign", "int", "Integer", "",1
		P: "UnitScaleFactor", "double", "Number", "",100
	}
}
Objects:  {
	Geometry: 100, "Geometry::g", "Mesh" {
		Vertices: *9 {
			a: 0,0,0,3,0,0,0,2,0
		}
		PolygonVertexIndex: *3 {
			a: 0,1,-3
		}
		GeometryVersion: 124
		LayerElementMaterial: 0 {
			Version: 101
			Name: ""
			MappingInformationType: "AllSame"
			ReferenceInformationType: "IndexToDirect"
			Materials: *1 {
				a: 0
			}
		}
		Layer: 0 {
			Version: 100
			LayerElement:  {
				Type: "LayerElementMaterial"
				TypedIndex: 0
			}
		}
	}
	Model: 200, "Model::Tri", "Mesh" {
		Version: 232
		Properties70:  {
			P: "Lcl Translation", "Lcl Translation", "", "A",1,2,3
		}
	}
	NodeAttribute: 300, "NodeAttribute::c", "Camera" {
		Properties70:  {
			P: "FieldOfView", "FieldOfView", "", "A",60
			P: "AspectWidth", "double", "Number", "",16
			P: "AspectHeight", "double", "Number", "",9
			P: "FarPlane", "double", "Number", "",500
		}
		TypeFlags: "Camera"
	}
	Model: 400, "Model::Cam", "Camera" {
		Version: 232
		Properties70:  {
			P: "Lcl Translation", "Lcl Translation", "", "A",5,6,7
			P: "Lcl Rotation", "Lcl Rotation", "", "A",0,0,90
		}
	}
	NodeAttribute: 500, "NodeAttribute::l", "Light" {
		Properties70:  {
			P: "LightType", "enum", "", "",2
			P: "Color", "Color", "", "A",1,0.5,0
			P: "Intensity", "Number", "", "A",80
			P: "OuterAngle", "Number", "", "A",40
		}
		TypeFlags: "Light"
	}
	Model: 600, "Model::Lamp", "Light" {
		Version: 232
		Properties70:  {
			P: "Lcl Translation", "Lcl Translation", "", "A",0,0,9
		}
	}
	Material: 700, "Material::paint", "" {
		Version: 102
		ShadingModel: "phong"
		Properties70:  {
			P: "DiffuseColor", "Color", "", "A",0.2,0.4,0.6
			P: "SpecularColor", "Color", "", "A",0.5,0.5,0.5
			P: "ShininessExponent", "Number", "", "A",32
			P: "Opacity", "double", "Number", "",0.5
		}
	}
}
Connections:  {
	C: "OO",200,0
	C: "OO",100,200
	C: "OO",700,200
	C: "OO",400,0
	C: "OO",300,400
	C: "OO",600,0
	C: "OO",500,600
}
)";

const char* const colladaWorld = R"(<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><unit name="meter" meter="1"/><up_axis>Z_UP</up_axis></asset>
<library_cameras><camera id="c" name="c"><optics><technique_common><perspective><xfov sid="xfov">60</xfov><aspect_ratio>1.777778</aspect_ratio><znear>0.1</znear><zfar sid="zfar">500</zfar></perspective></technique_common></optics></camera></library_cameras>
<library_lights><light id="l"><technique_common><spot><color>0.8 0.4 0</color><falloff_angle>40</falloff_angle></spot></technique_common></light></library_lights>
<library_effects><effect id="e"><profile_COMMON><technique sid="common"><phong><emission><color>0.1 0 0 1</color></emission><diffuse><color>0.2 0.4 0.6 1</color></diffuse><specular><color>0.5 0.5 0.5 1</color></specular><shininess><float>32</float></shininess></phong></technique></profile_COMMON></effect></library_effects>
<library_materials><material id="m" name="paint"><instance_effect url="#e"/></material></library_materials>
<library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 3 0 0 0 2 0</float_array><technique_common><accessor source="#pa" count="3" stride="3"><param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1" material="mm"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles></mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s">
<node id="Tri" name="Tri"><matrix>1 0 0 1 0 1 0 2 0 0 1 3 0 0 0 1</matrix><instance_geometry url="#g"><bind_material><technique_common><instance_material symbol="mm" target="#m"/></technique_common></bind_material></instance_geometry></node>
<node id="Cam" name="Cam"><matrix>1 0 0 5 0 0 -1 6 0 1 0 7 0 0 0 1</matrix><instance_camera url="#c"/></node>
<node id="Lamp" name="Lamp"><matrix>1 0 0 0 0 1 0 0 0 0 1 9 0 0 0 1</matrix><instance_light url="#l"/></node>
</visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#s"/></scene>
</COLLADA>
)";

}  // namespace vex
